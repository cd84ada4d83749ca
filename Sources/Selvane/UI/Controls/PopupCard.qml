import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A card that opens above a window and keeps within it. A click elsewhere or Escape closes it and does nothing
/// else.
T.Popup {
    id: root

    property string accessibleName: ""
    readonly property PopupKeeper keeper: PopupKeeper {
        popup: root
    }

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.ceil(implicitContentHeight + topPadding + bottomPadding)
    padding: 16
    margins: keeper.margin
    topInset: -24
    leftInset: -24
    rightInset: -24
    bottomInset: -24
    modal: true
    dim: false
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    background: PopupSurface {
        Accessible.role: Accessible.Dialog
        Accessible.name: root.accessibleName
    }
}
