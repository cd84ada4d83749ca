import QtQuick
import Selvane.Controls

/// The ground of what opens above a window, with its shadow, for a background whose insets are -24.
RoundedShape {
    id: root

    spread: 24
    radius: 10
    color: Theme.popup
    edgeColor: Theme.windowEdge
    shadowColor: Theme.popupShadow
    shadowRadius: 14
    shadowOffset: 5
}
