import QtQuick
import Selvane.Controls
import Selvane.Popover

/// Shows the phase and, while the timer is idle, selects another.
Pressable {
    id: root

    required property PhaseMenuModel model

    implicitHeight: 26
    leftPadding: 12
    rightPadding: 12
    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4
    tooltip: menu.isOpen ? "" : model.tooltip
    accessibleName: model.accessibleName
    onClicked: menu.open()

    background: CapsuleSurface {
        spread: 4
        interactive: true
        hovered: root.hovered
        pressed: root.pressed || menu.isOpen
        ringed: root.visualFocus
    }

    contentItem: Row {
        spacing: 6

        CrossFadeText {
            anchors.verticalCenter: parent.verticalCenter
            // At scale 2 half a pixel is one.
            anchors.alignWhenCentered: false
            words: root.model.title
            color: Theme.primaryText
            font.pixelSize: 12
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.down"
            size: 8
            weight: Symbol.Bold
            color: Theme.secondaryText
        }
    }

    LazyPopup {
        id: menu

        source: Qt.resolvedUrl("PhaseChoices.qml")
        properties: ({ model: root.model })
    }
}
