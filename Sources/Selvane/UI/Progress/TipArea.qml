import QtQuick
import Selvane.Controls

/// The place where the pointer brings up words of explanation. They are made when they are first asked for.
Item {
    id: root

    property string tip: ""

    HoverHandler {
        id: hover
    }

    Loader {
        anchors.fill: parent
        active: hover.hovered && root.tip !== ""

        sourceComponent: Item {
            HoverTip {
                text: root.tip
                visible: true
            }
        }
    }
}
