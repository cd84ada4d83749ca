import QtQuick
import Selvane.Controls

/// A task's title, on one line. Struck through as the task is done.
Text {
    id: root

    /// From 0, open, to 1, done. A spring may pass both.
    required property real doneness

    color: Theme.blended(Theme.primaryText, Theme.secondaryText, doneness)
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
        // Past its end and back, as far as the spring goes.
        width: root.contentWidth * root.doneness
        height: 1
        visible: root.doneness > 0
        // What the words' ink makes of the card's ground: the ink itself would be darker where the line crosses them.
        color: Qt.tint(Theme.surface, root.color)
    }
}
