import QtQuick
import Selvane.Controls
import Selvane.Timer

/// A style of the timer face, which exists while it is chosen and until it has faded out.
Item {
    id: root

    required property bool chosen
    required property url source
    required property TimerFaceModel model

    enabled: chosen
    opacity: presence.value
    scale: Theme.reducesMotion ? 1 : 0.96 + 0.04 * opacity

    SpringValue {
        id: presence

        target: root.chosen ? 1 : 0
        response: 0.5
        animated: !Theme.reducesMotion
    }

    LazyItem {
        anchors.centerIn: parent
        source: root.source
        properties: ({ model: root.model })
        wanted: root.chosen || root.opacity > 0
    }
}
