import QtQuick
import Selvane.Controls

/// One symbol of the grid.
Pressable {
    id: root

    required property int index
    required property string modelData
    required property string symbol
    required property bool isSelected

    implicitWidth: 32
    implicitHeight: 32
    tooltip: accessibleName
    Accessible.selectable: true
    Accessible.selected: isSelected

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: 14
            weight: Symbol.Medium
            color: root.isSelected ? Theme.primaryText : Theme.secondaryText
        }
    }

    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4

    background: RoundedShape {
        spread: 4
        radius: 8
        color: Theme.ink(root.isSelected ? 0.14 : root.hovered ? 0.09 : 0.05)
        edgeColor: Theme.mark(root.isSelected ? 0.35 : 0)
        edgeWidth: 1
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }
}
