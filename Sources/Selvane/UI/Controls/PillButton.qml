import QtQuick
import Selvane.Controls

/// A capsule with a word. The prominent one is the main action of its row.
Pressable {
    id: root

    property bool prominent: false

    readonly property color plainText: root.enabled ? Theme.primaryText : Theme.tertiaryText
    readonly property color solid: Qt.alpha(Theme.solidPrimary, root.down ? 0.82 : 1)

    implicitWidth: Math.max(prominent ? 116 : 0, Math.ceil(implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: Math.max(prominent ? 38 : 34, Math.ceil(implicitContentHeight))
    leftPadding: prominent ? 22 : 16
    rightPadding: leftPadding
    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4
    scale: size.value

    contentItem: Text {
        text: root.text
        color: root.prominent ? Theme.textOnSolidPrimary : root.plainText
        font.pixelSize: root.prominent ? 14 : 13
        font.weight: root.prominent ? Font.DemiBold : Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: CapsuleSurface {
        spread: 4
        color: root.prominent ? root.solid : "transparent"
        interactive: root.enabled
        hovered: root.hovered
        pressed: root.down
        ringed: root.visualFocus
    }

    SpringValue {
        id: size

        target: root.down ? 0.96 : 1
        response: 0.15
        dampingFraction: 0.85
        animated: !Theme.reducesMotion
    }
}
