import QtQuick
import QtQuick.Templates as T

/// The words that explain a control while the pointer rests on it.
T.ToolTip {
    id: root

    delay: 700
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: -implicitHeight - 6
    margins: 4
    padding: 6
    leftPadding: 9
    rightPadding: 9
    // Long words wrap within the panel.
    implicitWidth: Math.min(implicitContentWidth + leftPadding + rightPadding, 316)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: Text {
        text: root.text
        color: Theme.textOnSolidPrimary
        font.pixelSize: 11
        wrapMode: Text.Wrap
    }

    background: Rectangle {
        radius: 6
        color: Theme.solidPrimary
    }
}
