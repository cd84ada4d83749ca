import QtQuick
import Selvane.Controls

/// A small figure with its symbol.
TipArea {
    id: root

    required property string symbol

    implicitWidth: row.width
    implicitHeight: row.height

    Row {
        id: row

        spacing: 4

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: 9
            weight: Symbol.Semibold
            color: Theme.secondaryText
        }

        Text {
            text: root.name
            color: Theme.secondaryText
            font.pixelSize: Theme.caption
        }
    }
}
