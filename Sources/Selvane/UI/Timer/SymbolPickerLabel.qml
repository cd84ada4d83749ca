import QtQuick
import Selvane.Controls

/// The chosen symbol, or a word where none was chosen.
Item {
    id: root

    required property string name
    required property string noneWord

    implicitWidth: name === "" ? word.implicitWidth + 16 : 28

    Symbol {
        anchors.centerIn: parent
        visible: root.name !== ""
        name: root.name
        size: 14
        weight: Symbol.Medium
        color: Theme.primaryText
    }

    Text {
        id: word

        anchors.centerIn: parent
        visible: root.name === ""
        text: root.noneWord
        color: Theme.secondaryText
        font.pixelSize: Theme.callout
    }
}
