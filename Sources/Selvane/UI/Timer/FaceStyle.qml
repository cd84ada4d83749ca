import QtQuick
import Selvane.Controls

/// A style of the timer face, which exists while it is chosen and until it has faded out.
Item {
    id: root

    required property bool chosen
    default property Component face

    enabled: chosen
    opacity: chosen ? 1 : 0
    scale: Theme.reducesMotion ? 1 : 0.96 + 0.04 * opacity

    Behavior on opacity {
        SpringMotion {
            response: 0.5
            dampingFraction: 1
        }
    }

    // A loader of this Qt takes no component that is bound to its file.
    Repeater {
        model: root.chosen || root.opacity > 0 ? 1 : 0
        delegate: root.face
    }
}
