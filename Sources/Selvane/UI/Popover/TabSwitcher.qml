import QtQuick
import Selvane.Controls
import Selvane.Popover

/// Chooses what the lower part of the popover shows.
PillTabs {
    id: root

    required property PopoverModel model

    items: [root.model.tasksTitle, root.model.progressTitle]
    tooltip: root.model.tabTooltip
    minHeight: 24
}
