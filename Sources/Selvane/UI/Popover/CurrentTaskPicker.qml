pragma ComponentBehavior: Bound

import QtQml
import QtQuick
import Selvane.Controls
import Selvane.Popover

/// Shows and chooses the task that focus sessions count toward.
Pressable {
    id: root

    required property CurrentTaskPickerModel model

    implicitWidth: Math.min(Math.ceil(implicitContentWidth) + leftPadding + rightPadding, 316)
    implicitHeight: 22
    leftPadding: 8
    rightPadding: 8
    tooltip: menu.isOpen ? "" : model.tooltip
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
        textFormat: Text.PlainText
        color: Theme.ink(root.model.hasTask ? 0.85 : 0.6)
        font.pixelSize: Theme.callout
        maximumLineCount: 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    LazyMenu {
        id: menu

        PopupMenu {
            id: popup

            title: root.model.tooltip
            x: Math.round((root.width - width) / 2)
            width: Math.min(implicitWidth, 316)
            // Ten rows.
            height: Math.min(implicitHeight, 270)

            // Each row is put in its place by number: of a menu that scrolls, a Repeater would lose the order.
            // Not every distribution describes Instantiator to the linter.
            // qmllint disable
            Instantiator {
                id: tasks

                model: root.model.tasks
                onObjectAdded: (index, row) => popup.insertItem(index, row as Item)
                onObjectRemoved: (index, row) => popup.removeItem(row as Item)

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
                onObjectAdded: (index, row) => popup.insertItem(index, row as Item)
                onObjectRemoved: (index, row) => popup.removeItem(row as Item)

                PopupMenuItem {
                    required property string modelData

                    text: modelData
                    hint: true
                }
            }

            Instantiator {
                model: root.model.noTaskLabels
                onObjectAdded: (index, row) => popup.insertItem(tasks.count, row as Item)
                onObjectRemoved: (index, row) => popup.removeItem(row as Item)

                PopupMenuSeparator {}
            }

            Instantiator {
                model: root.model.noTaskLabels
                onObjectAdded: (index, row) => popup.addItem(row as Item)
                onObjectRemoved: (index, row) => popup.removeItem(row as Item)

                PopupMenuItem {
                    required property string modelData

                    text: modelData
                    markable: true
                    onTriggered: root.model.chooseNone()
                }
            }
            // qmllint enable
        }
    }
}
