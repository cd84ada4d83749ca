import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The sound to work by: which it is, how loud, and whether it plays.
Item {
    id: root

    required property MusicRowModel model

    readonly property alias hovering: hover.hovered

    implicitHeight: 38

    CapsuleSurface {
        anchors.fill: parent
    }

    HoverHandler {
        id: hover
    }

    PlayingSymbol {
        id: symbol

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        name: root.model.symbol
        size: 13
        weight: Symbol.Medium
        color: Theme.secondaryText
        playing: root.model.isPlaying
    }

    MusicMenu {
        anchors.left: symbol.right
        anchors.leftMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        model: root.model
    }

    IconButton {
        anchors.right: soundButton.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        visible: root.model.extra === MusicRowModel.OpenPlayer
        symbol: "arrow.up.forward.app"
        tooltip: root.model.openTooltip
        onClicked: root.model.openPlayer()
    }

    MiniSlider {
        anchors.right: soundButton.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.model.extra === MusicRowModel.Volume
        accessibleName: root.model.volumeLabel
        position: root.model.volume
        shown: root.model.isPlaying || root.hovering || activeFocus
        onMoved: root.model.volume = position
    }

    IconButton {
        id: soundButton

        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.model.soundSymbol
        replaces: true
        tooltip: root.model.soundTooltip
        enabled: root.model.canPlay
        onClicked: root.model.toggleSound()
    }
}
