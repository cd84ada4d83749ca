import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A small slider from 0 to 1.
T.Slider {
    id: root

    required property string accessibleName
    /// Whether it is drawn. A slider that isn't can still be found by the keyboard and by screen readers.
    property bool shown: true

    readonly property real minimumValue: from
    readonly property real maximumValue: to

    implicitWidth: 72
    implicitHeight: 20
    padding: 0
    stepSize: 0.05
    snapMode: T.Slider.NoSnap
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    wheelEnabled: true

    Accessible.role: Accessible.Slider
    Accessible.name: accessibleName

    background: Item {
        opacity: root.shown ? 1 : 0

        Behavior on opacity {
            SpringMotion {
                response: 0.2
                dampingFraction: 1
            }
        }

        Rectangle {
            y: (parent.height - height) / 2
            width: parent.width
            height: 3
            radius: 1.5
            color: Theme.ink(0.16)
        }

        Rectangle {
            y: (parent.height - height) / 2
            width: root.handle.x + root.handle.width / 2
            height: 3
            radius: 1.5
            color: Theme.solidPrimary
        }
    }

    handle: RoundedShape {
        opacity: root.background.opacity
        x: root.visualPosition * (root.width - 12) - spread
        y: (root.height - height) / 2
        width: 12 + 2 * spread
        height: 12 + 2 * spread
        spread: 4
        color: Theme.solidPrimary
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }
}
