import QtQuick
import Selvane.Controls
import Selvane.Progress

/// How much of the daily goal today's focus makes up.
GoalRingCanvas {
    id: root

    fraction: reached
    ink: Theme.solidPrimary
    lift: Theme.trackLift
    textInk: Theme.primaryText
    captionInk: Theme.secondaryText

    Behavior on fraction {
        SpringMotion {
            response: 0.5
            dampingFraction: 1
        }
    }

    // The words tell the amount and the goal, as no single value could.
    TipArea {
        anchors.fill: parent
        name: root.tooltip
        tip: root.tooltip
        Accessible.description: ""
    }
}
