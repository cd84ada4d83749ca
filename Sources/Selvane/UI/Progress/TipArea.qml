import QtQuick
import Selvane.Controls

/// A figure in words, for assistive technology. If it has words of explanation, the pointer and the keyboard bring
/// them up.
KeyboardStop {
    id: root

    required property string name
    property string tip: ""

    activeFocusOnTab: tip !== ""

    Accessible.role: Accessible.StaticText
    Accessible.name: name
    Accessible.description: tip
    Accessible.focusable: activeFocusOnTab

    Rectangle {
        anchors.fill: parent
        anchors.margins: -4
        visible: root.visualFocus
        radius: 6
        color: "transparent"
        border.width: 2
        border.color: Theme.focusRing
    }

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.tip
        visible: hover.hovered || root.visualFocus
    }
}
