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
Loader {
    id: root

    default property alias menu: root.sourceComponent

    readonly property bool isOpen: item !== null && (item as PopupMenu).visible

    /// Below the button.
    function open() {
        root.active = true;
        (root.item as PopupMenu).open();
    }

    /// At the pointer.
    function popup() {
        root.active = true;
        (root.item as PopupMenu).popup();
    }

    anchors.fill: parent
    active: false
}
