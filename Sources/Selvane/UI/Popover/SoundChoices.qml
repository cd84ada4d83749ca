pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The sounds, and where else sound can come from.
PopupMenu {
    id: root

    required property MusicRowModel model

    title: root.model.pickerLabel

    PopupMenuItem {
        text: root.model.pickerLabel
        hint: true
    }

    Repeater {
        model: root.model.sounds

        PopupMenuItem {
            required property string title
            required property bool isChecked
            required property int index

            text: title
            markable: true
            marked: isChecked
            onTriggered: root.model.chooseSound(index)
        }
    }

    PopupMenuSeparator {}

    Repeater {
        model: root.model.sources

        PopupMenuItem {
            required property string title
            required property bool isChecked
            required property int index

            text: title
            markable: true
            marked: isChecked
            onTriggered: root.model.chooseSource(index)
        }
    }
}
