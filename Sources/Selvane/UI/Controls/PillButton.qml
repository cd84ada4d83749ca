import QtQuick
import QtQuick.Templates as T

/// A capsule with a word. The prominent one is the main action of its row.
T.AbstractButton {
    id: root

    property bool prominent: false
    property string tooltip: ""

    readonly property color plainText: root.enabled ? Theme.primaryText : Theme.tertiaryText

    implicitWidth: Math.max(prominent ? 116 : 0, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: prominent ? 38 : 34
    leftPadding: prominent ? 22 : 16
    rightPadding: leftPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: tooltip
    Accessible.onPressAction: root.clicked()

    contentItem: Text {
        text: root.text
        color: root.prominent ? Theme.textOnSolidPrimary : root.plainText
        font.pixelSize: root.prominent ? 14 : 13
        font.weight: root.prominent ? Font.DemiBold : Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: height / 2
            color: root.prominent ? Theme.solidPrimary : root.pressed ? Theme.cardPressed : Theme.card
            opacity: root.prominent && root.pressed ? 0.82 : 1
            border.width: root.prominent ? 0 : 1
            border.color: Theme.hairline
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: height / 2
            visible: root.visualFocus
            color: "transparent"
            border.width: 2
            border.color: Theme.focusRing
        }
    }

    HoverTip {
        text: root.tooltip
        visible: root.hovered && root.enabled && root.tooltip !== ""
    }
}
