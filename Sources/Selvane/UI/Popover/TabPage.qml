import QtQuick
import Selvane.Controls

/// What a tab shows, seen while it is selected.
Item {
    id: root

    required property bool selected

    anchors.fill: parent
    opacity: selected ? 1 : 0
    visible: opacity > 0
    enabled: selected

    Behavior on opacity {
        SpringMotion {
            response: 0.5
            dampingFraction: 0.85
        }
    }
}
