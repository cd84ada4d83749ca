import QtQuick
import Selvane.Controls

/// A preset of lengths.
Pressable {
    id: root

    required property int index
    required property string modelData
    required property real fontSize
    required property bool isActive

    implicitHeight: Math.max(Math.ceil(fontSize + 11), implicitContentHeight)
    leftPadding: 10
    rightPadding: 10
    tooltip: accessibleName
    Accessible.selectable: true
    Accessible.selected: isActive

    contentItem: Text {
        text: root.text
        color: root.isActive ? Theme.primaryText : Theme.secondaryText
        font.pixelSize: root.fontSize
        font.weight: root.isActive ? Font.DemiBold : Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4

    background: RoundedShape {
        spread: 4
        color: Theme.ink(root.isActive ? 0.16 : root.pressed ? 0.12 : root.hovered ? 0.09 : 0.06)
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }
}
