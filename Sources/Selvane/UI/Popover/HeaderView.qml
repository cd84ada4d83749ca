import QtQuick
import QtQuick.Layouts
import Selvane.Popover

/// The phase, the streak and the menu of everything else.
RowLayout {
    id: root

    required property HeaderModel model
    required property PhaseMenuModel phaseMenu

    spacing: 0

    PhaseMenu {
        model: root.phaseMenu
    }

    Item {
        Layout.fillWidth: true
    }

    StreakBadge {
        Layout.rightMargin: 10
        model: root.model
    }

    // The symbol, not the area around it that takes the click, ends where the rows below end.
    MoreMenu {
        Layout.rightMargin: -5
        model: root.model
    }
}
