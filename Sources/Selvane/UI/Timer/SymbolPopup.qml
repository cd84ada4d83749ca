pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The card with the grid of symbols. It is made when it is first opened, and stands below the button it is
/// declared in.
Item {
    id: root

    property string title: ""
    required property string selection
    property PopupCard card: null
    readonly property bool isOpen: card !== null && card.visible
    /// The keyboard is shown in the card only if it opened it.
    property int focusReason: Qt.OtherFocusReason

    signal picked(name: string)

    function open(reason: int) {
        focusReason = reason;
        if (card === null)
            card = maker.createObject(root) as PopupCard;
        card.open();
    }

    Component {
        id: maker

        PopupCard {
            id: popup

            parent: root.parent
            x: Math.round((parent.width - width) / 2)
            y: parent.height + 6
            accessibleName: root.title

            contentItem: SymbolPanel {
                title: root.title
                selection: root.selection
                onPicked: name => root.picked(name)
                onDone: popup.close()
            }

            onOpened: (contentItem as SymbolPanel).begin(root.focusReason)
        }
    }
}
