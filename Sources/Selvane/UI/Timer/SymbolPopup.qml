import QtQuick
import Selvane.Controls

/// The choice of a symbol, on a card that stands below the button that this is declared in.
LazyPopup {
    id: root

    property string title: ""
    required property string selection
    /// The keyboard is shown in the card only if it opened it.
    property int focusReason: Qt.OtherFocusReason

    signal picked(name: string)

    function openFor(reason: int) {
        focusReason = reason;
        open();
    }

    source: Qt.resolvedUrl("SymbolCard.qml")
    properties: ({ choice: root })
}
