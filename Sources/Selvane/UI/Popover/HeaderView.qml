import QtQuick
import Selvane.Popover

/// The phase, the streak and the menu of everything else.
Item {
    id: root

    required property HeaderModel model
    required property PhaseMenuModel phaseMenu

    implicitHeight: Math.max(phase.height, streak.height, more.height)

    PhaseMenu {
        id: phase

        anchors.verticalCenter: parent.verticalCenter
        model: root.phaseMenu
    }

    StreakBadge {
        id: streak

        anchors.right: more.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        model: root.model
    }

    // The symbol, not the area around it that takes the click, ends where the rows below end.
    MoreMenu {
        id: more

        anchors.right: parent.right
        anchors.rightMargin: -6
        anchors.verticalCenter: parent.verticalCenter
        model: root.model
    }
}
