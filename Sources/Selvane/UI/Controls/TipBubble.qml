import QtQuick
import Selvane.Controls

/// What HoverTip shows. A rim of the ground keeps it apart from what is as bright or dark beneath it.
RoundedShape {
    id: root

    required property string text
    required property real maximumWidth

    width: Math.ceil(Math.min(words.implicitWidth + 20, maximumWidth))
    height: words.implicitHeight + 13
    radius: 7
    color: Theme.solidPrimary
    edgeColor: Theme.surface
    edgeWidth: 1

    Accessible.role: Accessible.ToolTip
    Accessible.name: text

    Text {
        id: words

        x: 10
        y: 6
        width: root.width - 20
        text: root.text
        textFormat: Text.PlainText
        color: Theme.textOnSolidPrimary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
    }
}
