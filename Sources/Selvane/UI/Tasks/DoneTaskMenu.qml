import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// What can be done with a done task.
PopupMenu {
    id: root

    required property TaskListModel tasks
    required property string taskID

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
