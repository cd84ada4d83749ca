import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The card with the grid of symbols.
PopupCard {
    id: root

    required property SymbolPopup choice

    x: parent !== null ? Math.round((parent.width - width) / 2) : 0
    y: parent !== null ? parent.height + 6 : 0
    accessibleName: choice.title

    contentItem: SymbolPanel {
        title: root.choice.title
        selection: root.choice.selection
        onPicked: name => root.choice.picked(name)
        onDone: root.close()
    }

    onOpened: (contentItem as SymbolPanel).begin(choice.focusReason)
}
