pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// What can be done with an open task.
PopupMenu {
    id: root

    required property TaskListInput input
    readonly property TaskListModel tasks: input.tasks
    readonly property string taskID: input.menuTask

    y: 0
    onClosed: input.closeMenu()
    Component.onCompleted: open()

    PopupMenuItem {
        text: root.tasks.focusLabel(root.taskID)
        onTriggered: root.tasks.toggleFocus(root.taskID)
    }

    PopupMenu {
        id: estimates

        title: root.tasks.estimateLabel

        Repeater {
            model: root.tasks.estimates

            PopupMenuItem {
                required property string modelData
                required property int index

                text: modelData
                onTriggered: root.tasks.setEstimate(root.taskID, index + 1)
            }
        }

        PopupMenuSeparator {}

        PopupMenuItem {
            text: root.tasks.noEstimateLabel
            onTriggered: root.tasks.setEstimate(root.taskID, 0)
        }
    }

    PopupMenuItem {
        text: root.tasks.renameLabel
        onTriggered: root.tasks.beginRename(root.taskID)
    }

    PopupMenuSeparator {}

    PopupMenuItem {
        text: root.tasks.deleteLabel
        destructive: true
        onTriggered: root.tasks.remove(root.taskID)
    }
}
