import QtQuick
import Selvane.Controls
import Selvane.Popover

/// How many days in a row have reached their goal. The pointer and the keyboard bring up what that means for today.
KeyboardStop {
    id: root

    required property HeaderModel model

    readonly property color ink: model.isTodayMet ? Theme.primaryText : Theme.secondaryText

    implicitWidth: Math.ceil(number.x + number.implicitWidth)
    implicitHeight: Math.max(flame.height, number.height)
    ringColor: Theme.focusRing

    Accessible.role: Accessible.StaticText
    Accessible.name: model.streakTooltip
    Accessible.focusable: true

    Symbol {
        id: flame

        anchors.verticalCenter: parent.verticalCenter
        name: "flame.fill"
        size: 13
        weight: Symbol.Semibold
        color: root.ink
    }

    Text {
        id: number

        anchors.left: flame.right
        anchors.leftMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        text: root.model.streak
        color: root.ink
        font.pixelSize: 13
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.model.streakTooltip
        visible: hover.hovered || root.visualFocus
    }
}
