import QtQuick
import Selvane.Controls

/// What makes the time a button: the pointer of text, and a ring around it when the keyboard is there.
Pressable {
    id: root

    required property string hint

    Accessible.description: hint

    topInset: 2
    leftInset: -10
    rightInset: -10
    bottomInset: 2

    background: RoundedShape {
        visible: root.visualFocus
        spread: 4
        radius: 8
        ringed: true
        ringColor: Theme.focusRing
    }

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }
}
