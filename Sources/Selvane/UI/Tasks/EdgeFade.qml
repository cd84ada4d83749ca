import QtQuick
import Selvane.Controls

/// Lets rows fade at the lower edge of a list that goes on beyond it. The edge of the card beside them stays.
Rectangle {
    id: root

    x: 1
    width: parent.width - 2
    height: 16
    Accessible.ignored: true

    gradient: Gradient {
        GradientStop {
            position: 0
            color: Qt.alpha(Theme.surface, 0)
        }

        GradientStop {
            position: 1
            color: Theme.surface
        }
    }
}
