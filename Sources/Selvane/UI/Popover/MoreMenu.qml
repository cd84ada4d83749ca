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
    Accessible.description: model.isUpdateAvailable ? model.updateLabel : ""
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

    // There is an update. The symbol's box is 18 wide; the dot reaches 3 beyond its right and 2 beyond its top.
    Rectangle {
        x: 19
        y: 2
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
    }
}
