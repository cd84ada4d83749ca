pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The phases, and why none of them can be chosen now.
PopupMenu {
    id: root

    required property PhaseMenuModel model

    title: root.model.pickerLabel

    Repeater {
        model: root.model.phases

        PopupMenuItem {
            required property string title
            required property bool isChecked
            required property int index

            text: title
            markable: true
            marked: isChecked
            enabled: root.model.canSelect
            onTriggered: root.model.select(index)
        }
    }

    Repeater {
        model: root.model.hints

        PopupMenuSeparator {}
    }

    Repeater {
        model: root.model.hints

        PopupMenuItem {
            required property string modelData

            text: modelData
            hint: true
        }
    }
}
