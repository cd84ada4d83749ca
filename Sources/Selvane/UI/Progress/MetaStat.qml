import QtQuick
import Selvane.Controls

/// A small figure with its symbol.
Row {
    id: root

    required property string symbol
    required property string text
    property string tooltip: ""

    spacing: 4

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.description: tooltip

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        size: 9
        weight: Symbol.Semibold
        color: Theme.secondaryText
    }

    Text {
        id: words

        text: root.text
        color: Theme.secondaryText
        font.pixelSize: Theme.caption

        TipArea {
            x: -words.x
            width: root.width
            height: parent.height
            tip: root.tooltip
        }
    }
}
