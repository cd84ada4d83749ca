import QtQuick
import Selvane.Controls

/// A row of a menu whose printed keys work while the menu is open, when those of the window don't.
PopupMenuItem {
    id: root

    Shortcut {
        sequence: root.shortcut
        enabled: root.visible && root.enabled
        onActivated: root.clicked()
    }
}
