import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// How far a task has come, in circles; in numbers where the pointer rests.
SessionDots {
    id: root

    required property string tooltip

    doneColor: Theme.mark(0.8)
    openColor: Theme.mark(0.18)

    HoverHandler {
        id: hover

        margin: 6
    }

    HoverTip {
        text: root.tooltip
        visible: hover.hovered
    }
}
