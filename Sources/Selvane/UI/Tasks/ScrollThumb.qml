import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A thin bar that shows what part of a list is seen, while that is asked for.
T.ScrollBar {
    id: root

    implicitWidth: 10
    padding: 3
    minimumSize: 0.15
    visible: size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        radius: width / 2
        color: Theme.ink(root.pressed ? 0.5 : root.hovered ? 0.4 : 0.25)
        opacity: root.active ? 1 : 0

        Behavior on opacity {
            SpringMotion {
                response: 0.25
                dampingFraction: 1
            }
        }
    }
}
