import QtQuick
import Selvane.Controls

/// A small slider from 0 to 1.
SlideArea {
    id: root

    required property string accessibleName
    /// Whether it is drawn. A slider that isn't can still be found by the keyboard and by screen readers.
    property bool shown: true
    /// All that is drawn.
    property alias background: drawing

    implicitWidth: 72
    implicitHeight: 20
    stepSize: 0.05
    handleWidth: 12

    Accessible.role: Accessible.Slider
    Accessible.name: accessibleName

    SpringValue {
        id: presence

        target: root.shown ? 1 : 0
        response: 0.2
        animated: !Theme.reducesMotion
    }

    Item {
        id: drawing

        anchors.fill: parent
        opacity: presence.value

        Rectangle {
            y: (parent.height - height) / 2
            width: parent.width
            height: 4
            radius: 2
            color: Theme.mark(0.16)
        }

        Rectangle {
            y: (parent.height - height) / 2
            width: handle.x + handle.width / 2
            height: 4
            radius: 2
            color: Theme.solidPrimary
        }

        RoundedShape {
            id: handle

            x: root.position * (root.width - root.handleWidth) - spread
            y: (root.height - height) / 2
            width: root.handleWidth + 2 * spread
            height: width
            spread: 4
            color: Theme.solidPrimary
            ringed: root.visualFocus
            ringColor: Theme.focusRing
        }
    }
}
