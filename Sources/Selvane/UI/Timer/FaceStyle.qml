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
    opacity: chosen ? 1 : 0
    scale: Theme.reducesMotion ? 1 : 0.96 + 0.04 * opacity

    Behavior on opacity {
        SpringMotion {
            response: 0.5
            dampingFraction: 1
        }
    }

    LazyItem {
        anchors.centerIn: parent
        source: root.source
        properties: ({ model: root.model })
        wanted: root.chosen || root.opacity > 0
    }
}
