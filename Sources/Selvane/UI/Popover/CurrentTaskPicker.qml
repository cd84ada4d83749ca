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
        color: root.model.hasTask ? Theme.ink(0.85) : Theme.promptText
        font.pixelSize: Theme.callout
        maximumLineCount: 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    LazyPopup {
        id: menu

        source: Qt.resolvedUrl("TaskChoices.qml")
        properties: ({ model: root.model })
    }
}
