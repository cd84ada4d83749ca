import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A menu of PopupMenuItem, PopupMenuSeparator and, for submenus, PopupMenu. `open()` opens it below the item that it
/// is declared in, `popup()` at the pointer; it keeps within the window's card and scrolls where that is
/// lower than the menu. A click elsewhere or Escape closes it and does nothing else. Make it lazily: see LazyPopup.
MeasuredMenu {
    id: root

    y: parent !== null ? parent.height + 4 : 0
    implicitWidth: Math.ceil(measure.width + leftPadding + rightPadding)
    implicitHeight: Math.ceil(contentHeight + topPadding + bottomPadding)
    padding: 5
    margins: keeper.margin
    topInset: -24
    leftInset: -24
    rightInset: -24
    bottomInset: -24
    overlap: 2
    modal: true
    dim: false

    readonly property PopupKeeper keeper: PopupKeeper {
        popup: root
    }

    delegate: PopupMenuItem {}

    background: PopupSurface {
        Accessible.role: Accessible.PopupMenu
        Accessible.name: root.title
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        highlightMoveDuration: 0

        // Says that there are more rows than are seen.
        T.ScrollIndicator.vertical: MenuScrollMark {}
    }
}
