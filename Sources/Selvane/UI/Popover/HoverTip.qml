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
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    contentItem: Text {
        text: root.text
        color: Theme.textOnSolidPrimary
        font.pixelSize: 11
    }

    background: Rectangle {
        radius: 6
        color: Theme.solidPrimary
    }
}
