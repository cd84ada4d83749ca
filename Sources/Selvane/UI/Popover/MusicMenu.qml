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

    LazyPopup {
        id: menu

        source: Qt.resolvedUrl("SoundChoices.qml")
        properties: ({ model: root.model })
    }
}
