import QtQuick
import Selvane.Controls

/// The layer behind the popover's content. It is as if nothing of the desktop shone through a layer of nearly the
/// surface's colour, since what is behind can't be blurred here and would make the words hard to read.
RoundedShape {
    id: root

    required property int margin

    spread: margin
    color: Theme.surface
    edgeColor: Theme.windowEdge
    shadowColor: margin > 0 ? Theme.popupShadow : "transparent"
    shadowRadius: margin * 0.6
    shadowOffset: margin * 0.25
}
