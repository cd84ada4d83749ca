import QtQuick
import Selvane.Controls

/// A title, if there is one, and the grid of symbols.
FocusScope {
    id: root

    required property string title
    required property string selection

    signal picked(name: string)
    signal done

    implicitWidth: grid.implicitWidth
    implicitHeight: grid.y + grid.implicitHeight

    function begin(reason: int) {
        grid.focusSelection(reason);
    }

    Text {
        id: heading

        visible: text !== ""
        text: root.title
        color: Theme.secondaryText
        font.pixelSize: 11
        font.weight: Font.DemiBold
        font.letterSpacing: 1.1
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    SymbolGrid {
        id: grid

        y: heading.visible ? 24 : 0
        selection: root.selection
        onSelected: name => root.picked(name)
        onPick: root.done()
    }
}
