import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The small icon of the phase above the time; a click offers other icons.
Pressable {
    id: root

    required property TimerFaceModel model
    readonly property bool choosing: popup.isOpen

    implicitWidth: 26
    implicitHeight: 16 + bottomPadding
    tooltip: choosing ? "" : model.iconTooltip
    accessibleName: model.iconLabel
    Accessible.description: model.iconHint

    onClicked: popup.openFor(visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason)

    contentItem: GlyphDrawing {
        name: root.model.glyph
        hovering: root.hovered
    }

    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: bottomPadding - 4

    background: RoundedShape {
        spread: 4
        radius: 5
        color: Theme.ink(root.hovered ? 0.07 : 0)
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }

    SymbolPopup {
        id: popup

        title: root.model.iconTitle
        selection: root.model.symbol
        onPicked: name => root.model.chooseSymbol(name)
    }
}
