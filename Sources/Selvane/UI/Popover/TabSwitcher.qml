import QtQuick
import Selvane.Controls

/// Chooses what the lower part of the popover shows.
PillTabs {
    id: root

    minHeight: 24
}
