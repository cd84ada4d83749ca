import QtQuick
import Selvane.Controls

/// The mark of the task that sessions are credited to.
Symbol {
    id: root

    required property string tooltip

    name: "scope"
    size: Theme.caption
    color: Theme.secondaryText

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.tooltip
        visible: hover.hovered
    }
}
