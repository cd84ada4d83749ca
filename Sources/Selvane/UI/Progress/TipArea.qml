import QtQuick
import Selvane.Controls

/// The place where the pointer brings up words of explanation.
Item {
    id: root

    property string tip: ""

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.tip
        visible: hover.hovered
    }
}
