pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The menu of what the popover itself has no room for.
IconButton {
    id: root

    required property HeaderModel model

    symbol: "ellipsis"
    accessibleName: model.moreLabel
    onClicked: menu.open()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: 14
            weight: Symbol.Semibold
            color: root.symbolColor
        }
    }

    // There is an update.
    Rectangle {
        x: 20
        y: 4
        width: 6
        height: 6
        radius: 3
        visible: root.model.isUpdateAvailable
        color: Theme.primaryText
    }

    LazyMenu {
        id: menu

        PopupMenu {
            title: root.model.moreLabel
            x: root.width - width

            PopupMenuItem {
                text: root.model.statisticsLabel
                shortcut: root.model.statisticsShortcut
                onTriggered: root.model.openStatistics()
            }

            PopupMenuItem {
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

            PopupMenuItem {
                text: root.model.quitLabel
                shortcut: root.model.quitShortcut
                onTriggered: root.model.quit()
            }
        }
    }
}
