import QtQuick
import Selvane.Controls

/// A figure in words, for assistive technology. If it has words of explanation, the pointer and the keyboard bring
/// them up.
KeyboardStop {
    id: root

    required property string name
    property string tip: ""

    activeFocusOnTab: tip !== ""
    ringColor: Theme.focusRing

    Accessible.role: Accessible.StaticText
    Accessible.name: name
    Accessible.description: tip
    Accessible.focusable: activeFocusOnTab

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.tip
        visible: hover.hovered || root.visualFocus
    }
}
