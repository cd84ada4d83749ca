import QtQuick
import Selvane.Controls

/// What a tab shows, seen while it is selected.
Item {
    id: root

    required property bool selected

    anchors.fill: parent
    opacity: presence.value
    // Where the spring swings about its end, the page would come and go.
    visible: selected || opacity > 0.001
    enabled: selected

    SpringValue {
        id: presence

        target: root.selected ? 1 : 0
        response: 0.5
        dampingFraction: 0.85
        animated: !Theme.reducesMotion
    }
}
