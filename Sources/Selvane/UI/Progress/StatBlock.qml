import QtQuick
import Selvane.Controls

/// A figure with its symbol and what it counts.
Column {
    id: root

    required property string symbol
    required property string value
    required property string label
    property bool emphasized: false

    spacing: 2

    Accessible.role: Accessible.StaticText
    Accessible.name: value + " " + label

    Symbol {
        name: root.symbol
        size: 13
        weight: Symbol.Semibold
        color: root.emphasized ? Theme.primaryText : Theme.secondaryText
    }

    Text {
        topPadding: 4
        text: root.value
        color: Theme.primaryText
        font.pixelSize: 20
        font.weight: Font.DemiBold
    }

    Text {
        text: root.label
        color: Theme.secondaryText
        font.pixelSize: Theme.caption
    }
}
