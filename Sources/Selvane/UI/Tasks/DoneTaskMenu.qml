import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// What can be done with a done task.
PopupMenu {
    id: root

    required property TaskListInput input
    readonly property TaskListModel tasks: input.tasks
    readonly property string taskID: input.menuTask

    y: 0
    onClosed: input.closeMenu()
    Component.onCompleted: open()

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
