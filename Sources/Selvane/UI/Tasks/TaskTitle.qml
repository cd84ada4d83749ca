import QtQuick
import Selvane.Controls

/// A task's title, on one line. Struck through as the task is done.
Text {
    id: root

    /// From 0, open, to 1, done. A spring may pass both.
    required property real doneness

    function blended(from: color, to: color, part: real): color {
        return Qt.rgba(from.r + (to.r - from.r) * part, from.g + (to.g - from.g) * part, from.b + (to.b - from.b) * part, from.a + (to.a - from.a) * part);
    }

    color: blended(Theme.primaryText, Theme.secondaryText, Math.min(Math.max(doneness, 0), 1))
    font.pixelSize: 14
    elide: Text.ElideRight
    maximumLineCount: 1
    textFormat: Text.PlainText
    // Also for words that are written from the right: the marks are there.
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true

    Rectangle {
        y: Math.round(root.height / 2) + 1
        width: root.contentWidth * Math.min(root.doneness, 1)
        height: 1
        visible: root.doneness > 0
        color: root.color
    }
}
