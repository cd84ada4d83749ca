import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The menu of what the popover itself has no room for.
IconButton {
    id: root

    required property HeaderModel model

    symbol: "ellipsis"
    symbolSize: 14
    symbolWeight: Symbol.Semibold
    accessibleName: model.moreLabel
    Accessible.description: model.isUpdateAvailable ? model.updateLabel : ""
    onClicked: menu.open()

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

    LazyPopup {
        id: menu

        source: Qt.resolvedUrl("MoreCommands.qml")
        properties: ({ model: root.model })
    }
}
