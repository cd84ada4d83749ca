import QtQuick
import Selvane.Controls
import Selvane.Popover

/// What the popover itself has no room for.
PopupMenu {
    id: root

    required property HeaderModel model

    title: root.model.moreLabel
    x: parent !== null ? parent.width - width : 0

    KeyedMenuItem {
        text: root.model.statisticsLabel
        shortcut: root.model.statisticsShortcut
        onTriggered: root.model.openStatistics()
    }

    KeyedMenuItem {
        text: root.model.settingsLabel
        shortcut: root.model.settingsShortcut
        onTriggered: root.model.openSettings()
    }

    PopupMenuSeparator {}

    PopupMenuItem {
        text: root.model.whatsNewLabel
        onTriggered: root.model.openWhatsNew()
    }

    PopupMenuItem {
        text: root.model.updateLabel
        enabled: root.model.canCheckForUpdates
        onTriggered: root.model.checkForUpdates()
    }

    PopupMenuSeparator {}

    KeyedMenuItem {
        text: root.model.quitLabel
        shortcut: root.model.quitShortcut
        onTriggered: root.model.quit()
    }
}
