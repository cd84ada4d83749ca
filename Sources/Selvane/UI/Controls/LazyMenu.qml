import QtQuick
import Selvane.Controls

/// A menu that is made when it is first opened. Declared in the button or the row that it belongs to:
///
///     LazyMenu {
///         id: menu
///
///         PopupMenu { PopupMenuItem { text: "Rename" } }
///     }
///     onClicked: menu.open()
///
/// A Loader would do, but that of Qt 6.4 can't make components that are bound to their file.
Item {
    id: root

    default property Component menu
    property PopupMenu made: null
    readonly property bool isOpen: made !== null && made.visible

    /// Below the button.
    function open() {
        make();
        made.open();
    }

    /// At the pointer.
    function popup() {
        make();
        made.popup();
    }

    function make() {
        if (made === null)
            made = menu.createObject(root) as PopupMenu;
    }

    anchors.fill: parent
}
