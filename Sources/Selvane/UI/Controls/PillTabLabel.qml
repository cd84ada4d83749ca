import QtQuick
import Selvane.Controls

/// The word on one of the choices of PillTabs.
Text {
    id: root

    property PillTab tab: null

    readonly property bool selected: tab !== null && tab.selected
    readonly property bool hovered: tab !== null && tab.hovered

    text: tab !== null ? tab.modelData : ""
    color: selected || hovered ? Theme.primaryText : Theme.secondaryText
    font.pixelSize: 12
    font.weight: selected ? Font.DemiBold : Font.Medium
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideRight
}
