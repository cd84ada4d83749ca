import QtQuick
import Selvane.Controls

/// A quiet word that can be pressed.
Pressable {
    id: root

    property int fontSize: 12
    property int fontWeight: Font.Medium

    readonly property color resting: root.hovered ? Theme.primaryText : Theme.secondaryText

    implicitHeight: 24
    leftPadding: 8
    rightPadding: 8

    contentItem: Text {
        text: root.text
        color: root.enabled ? root.resting : Theme.tertiaryText
        font.pixelSize: root.fontSize
        font.weight: root.fontWeight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: RoundedShape {
        radius: 6
        color: Theme.ink(root.down ? 0.12 : root.hovered ? 0.07 : 0)
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }
}
