import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The choice of a symbol for a page of settings.
Pressable {
    id: root

    required property string selection
    readonly property bool choosing: popup.isOpen

    /// The user wants this symbol.
    signal selected(name: string)

    implicitWidth: Math.max(28, Math.ceil(implicitContentWidth))
    implicitHeight: 24
    text: choices.label(selection)

    onClicked: popup.openFor(visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason)

    SymbolChoices {
        id: choices
    }

    contentItem: SymbolPickerLabel {
        name: root.selection
        noneWord: choices.noneWord
    }

    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4

    background: RoundedShape {
        spread: 4
        radius: 6
        color: root.pressed || root.choosing ? Theme.cardPressed : Theme.card
        edgeColor: Theme.hairline
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }

    SymbolPopup {
        id: popup

        selection: root.selection
        onPicked: name => root.selected(name)
    }
}
