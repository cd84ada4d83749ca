pragma ComponentBehavior: Bound

import QtQml
import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The tasks that can be focused on, or why there are none.
PopupMenu {
    id: root

    required property CurrentTaskPickerModel model

    title: root.model.tooltip
    x: parent !== null ? Math.round((parent.width - width) / 2) : 0
    width: Math.min(implicitWidth, 316)
    // Ten rows.
    height: Math.min(implicitHeight, 270)

    // Each row is put in its place by number: of a menu that scrolls, a Repeater would lose the order.
    // Not every distribution describes Instantiator to the linter.
    // qmllint disable
    Instantiator {
        id: tasks

        model: root.model.tasks
        onObjectAdded: (index, row) => root.insertItem(index, row as Item)
        onObjectRemoved: (index, row) => root.removeItem(row as Item)

        PopupMenuItem {
            required property string title
            required property bool isChecked
            required property int index

            text: title
            markable: true
            marked: isChecked
            onTriggered: root.model.choose(index)
        }
    }

    Instantiator {
        model: root.model.hints
        onObjectAdded: (index, row) => root.insertItem(index, row as Item)
        onObjectRemoved: (index, row) => root.removeItem(row as Item)

        PopupMenuItem {
            required property string modelData

            text: modelData
            hint: true
        }
    }

    Instantiator {
        model: root.model.noTaskLabels
        onObjectAdded: (index, row) => root.insertItem(tasks.count, row as Item)
        onObjectRemoved: (index, row) => root.removeItem(row as Item)

        PopupMenuSeparator {}
    }

    Instantiator {
        model: root.model.noTaskLabels
        onObjectAdded: (index, row) => root.addItem(row as Item)
        onObjectRemoved: (index, row) => root.removeItem(row as Item)

        PopupMenuItem {
            required property string modelData

            text: modelData
            markable: true
            onTriggered: root.model.chooseNone()
        }
    }
    // qmllint enable
}
