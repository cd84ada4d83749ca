import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The dashes of the cycle, for the eye, the pointer, the keyboard and the screen reader.
KeyboardStop {
    id: root

    required property TimerFaceModel model
    property real topPadding: 0

    implicitWidth: dashes.implicitWidth
    implicitHeight: topPadding + dashes.implicitHeight
    ringColor: Theme.focusRing
    ringTop: topPadding

    Accessible.role: Accessible.StaticText
    Accessible.name: dashes.label
    Accessible.description: dashes.tooltip
    Accessible.focusable: true

    CycleDashes {
        id: dashes

        y: root.topPadding
        phase: root.model.phase
        position: root.model.cyclePosition
        length: root.model.cycleLength
        isRunning: root.model.isRunning
        time: root.model.time
        reducesMotion: Theme.reducesMotion
        ink: Theme.solidPrimary
        lift: Theme.markLift

        HoverHandler {
            id: hover

            // The dashes are thin; a little around them is theirs too.
            margin: 4
        }

        HoverTip {
            text: dashes.tooltip
            visible: hover.hovered || root.visualFocus
        }
    }
}
