import QtQuick
import QtQuick.Layouts
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

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 6
        spacing: 0

        PlayingSymbol {
            name: root.model.symbol
            size: 13
            weight: Symbol.Medium
            color: Theme.secondaryText
            playing: root.model.isPlaying
        }

        MusicMenu {
            Layout.leftMargin: 2
            model: root.model
        }

        Item {
            Layout.fillWidth: true
        }

        IconButton {
            Layout.rightMargin: 4
            visible: root.model.extra === MusicRowModel.OpenPlayer
            symbol: "arrow.up.forward.app"
            tooltip: root.model.openTooltip
            onClicked: root.model.openPlayer()
        }

        MiniSlider {
            Layout.rightMargin: 8
            visible: root.model.extra === MusicRowModel.Volume
            accessibleName: root.model.volumeLabel
            value: root.model.volume
            shown: root.model.isPlaying || root.hovering || activeFocus
            onMoved: root.model.volume = value
        }

        IconButton {
            symbol: root.model.soundSymbol
            tooltip: root.model.soundTooltip
            enabled: root.model.canPlay
            onClicked: root.model.toggleSound()
        }
    }
}
