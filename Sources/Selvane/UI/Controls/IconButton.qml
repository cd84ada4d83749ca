import QtQuick
import Selvane.Controls

/// A symbol that can be pressed. Its name for assistive technology is the tooltip unless another is set.
Pressable {
    id: root

    required property string symbol
    property real symbolSize: 13
    property int symbolWeight: Symbol.Medium
    /// Whether another symbol takes the place of this one softly.
    property bool replaces: false
    property color symbolColor: enabled ? Theme.primaryText : Theme.tertiaryText

    implicitWidth: 26
    implicitHeight: 26
    accessibleName: tooltip

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            replaces: root.replaces && !Theme.reducesMotion
            size: root.symbolSize
            weight: root.symbolWeight
            color: root.symbolColor
        }
    }

    background: RoundedShape {
        radius: 6
        color: Theme.ink(root.down ? 0.12 : root.hovered ? 0.07 : 0)
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }
}
