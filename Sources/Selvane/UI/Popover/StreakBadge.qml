import QtQuick
import Selvane.Controls
import Selvane.Popover

/// How many days in a row have reached their goal.
Row {
    id: root

    required property HeaderModel model

    readonly property color ink: model.isTodayMet ? Theme.primaryText : Theme.secondaryText

    width: Math.ceil(implicitWidth)
    spacing: 3

    Accessible.role: Accessible.StaticText
    Accessible.name: model.streakTooltip

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: "flame.fill"
        size: 13
        weight: Symbol.Semibold
        color: root.ink
    }

    Text {
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
        visible: hover.hovered
    }
}
