import QtQuick
import QtQuick.Templates as T

/// A quiet word that can be pressed.
T.AbstractButton {
    id: root

    property string tooltip: ""
    property string accessibleName: text

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 24
    leftPadding: 8
    rightPadding: 8
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.description: tooltip
    Accessible.onPressAction: root.clicked()

    contentItem: Text {
        text: root.text
        color: root.hovered ? Theme.primaryText : Theme.secondaryText
        font.pixelSize: 12
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        radius: 6
        color: root.pressed ? Theme.cardPressed : root.hovered ? Theme.card : "transparent"
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.focusRing
    }

    HoverTip {
        text: root.tooltip
        visible: root.hovered && root.tooltip !== ""
    }
}
