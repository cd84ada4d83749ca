import QtQuick
import Selvane.Controls
import Selvane.Progress

/// How much of the daily goal today's focus makes up.
GoalRingCanvas {
    id: root

    fraction: reached
    ink: Theme.solidPrimary
    textInk: Theme.primaryText
    captionInk: Theme.secondaryText

    Accessible.role: Accessible.ProgressBar
    Accessible.name: tooltip

    Behavior on fraction {
        SpringMotion {
            response: 0.5
            dampingFraction: 1
        }
    }

    TipArea {
        anchors.fill: parent
        tip: root.tooltip
    }
}
