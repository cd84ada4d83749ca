import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A line between the rows of a PopupMenu.
T.MenuSeparator {
    id: root

    implicitWidth: 40
    implicitHeight: 11
    leftPadding: 10
    rightPadding: 10
    topPadding: 5
    bottomPadding: 5

    Accessible.role: Accessible.Separator

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.highContrast ? Theme.hairline : Theme.ink(0.12)
    }
}
