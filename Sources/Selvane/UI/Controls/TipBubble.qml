import QtQuick
import Selvane.Controls

/// What HoverTip shows.
RoundedShape {
    id: root

    required property string text
    required property real maximumWidth

    width: Math.ceil(Math.min(words.implicitWidth + 18, maximumWidth))
    height: words.implicitHeight + 11
    radius: 6
    color: Theme.solidPrimary

    Accessible.role: Accessible.ToolTip
    Accessible.name: text

    Text {
        id: words

        x: 9
        y: 5
        width: root.width - 18
        text: root.text
        color: Theme.textOnSolidPrimary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
    }
}
