import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// Where the rows of a menu that are seen lie among all its rows. Nothing if all are seen.
T.ScrollIndicator {
    id: root

    implicitWidth: 3

    contentItem: Rectangle {
        visible: root.size < 1
        radius: 1.5
        color: Theme.mark(0.3)
    }
}
