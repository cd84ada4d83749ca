import QtQuick
import Selvane.Controls

/// The words of a menu's row, and to the right the keys that do the same.
Item {
    id: root

    required property string text
    required property string shortcut
    required property color color
    required property int weight

    implicitWidth: label.implicitWidth + (shortcut !== "" ? 28 + keys.implicitWidth : 0)
    implicitHeight: label.implicitHeight

    Text {
        id: label

        anchors.left: parent.left
        anchors.right: keys.left
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        color: root.color
        font.pixelSize: Theme.callout
        font.weight: root.weight
        elide: Text.ElideRight
    }

    Text {
        id: keys

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.shortcut
        color: Theme.secondaryText
        font.pixelSize: Theme.callout
    }
}
