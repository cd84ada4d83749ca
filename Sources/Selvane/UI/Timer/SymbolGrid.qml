pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Timer

/// The symbols that may stand for a phase. The arrow keys go from tile to tile, Return and Space pick.
FocusScope {
    id: root

    required property string selection

    /// The user wants this symbol.
    signal selected(name: string)
    /// The choice is made.
    signal pick

    implicitWidth: grid.implicitWidth
    implicitHeight: grid.implicitHeight

    /// Gives the keyboard to the tile of the selection.
    function focusSelection(reason: int) {
        focusTile(choices.indexOf(selection), reason);
    }

    function focusTile(index: int, reason: int) {
        tiles.itemAt(index).forceActiveFocus(reason);
    }

    SymbolChoices {
        id: choices
    }

    Grid {
        id: grid

        columns: choices.columns
        spacing: 6

        Repeater {
            id: tiles

            model: choices.names

            SymbolTile {
                id: tile

                symbol: choices.symbol(tile.modelData)
                accessibleName: choices.label(tile.modelData)
                isSelected: root.selection === tile.modelData
                Keys.onLeftPressed: root.focusTile(choices.neighbour(tile.index, -1, 0), Qt.TabFocusReason)
                Keys.onRightPressed: root.focusTile(choices.neighbour(tile.index, 1, 0), Qt.TabFocusReason)
                Keys.onUpPressed: root.focusTile(choices.neighbour(tile.index, 0, -1), Qt.TabFocusReason)
                Keys.onDownPressed: root.focusTile(choices.neighbour(tile.index, 0, 1), Qt.TabFocusReason)
                onClicked: {
                    root.selected(tile.modelData);
                    root.pick();
                }
            }
        }
    }
}
