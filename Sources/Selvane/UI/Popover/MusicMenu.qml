pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Popover

/// Shows and chooses the sound to work by.
Pressable {
    id: root

    required property MusicRowModel model

    implicitHeight: 26
    leftPadding: 6
    rightPadding: 6
    accessibleName: model.title
    onClicked: menu.open()

    background: RoundedShape {
        radius: 6
        color: Theme.ink(root.pressed || menu.isOpen ? 0.12 : root.hovered ? 0.07 : 0)
        ringed: root.visualFocus
        ringColor: Theme.focusRing
    }

    contentItem: Text {
        text: root.model.title
        color: Theme.primaryText
        font.pixelSize: 13
        verticalAlignment: Text.AlignVCenter
    }

    LazyMenu {
        id: menu

        PopupMenu {
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
    }
}
