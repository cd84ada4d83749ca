import QtQuick
import Selvane.Controls

/// One of the choices of PillTabs. Its parent is the strip of them.
Item {
    id: root

    required property int index
    required property string modelData

    readonly property PillTabStrip strip: parent as PillTabStrip
    readonly property bool selected: strip !== null && strip.currentIndex === index
    readonly property bool hovered: hover.hovered

    x: strip !== null ? index * strip.segment : 0
    width: strip !== null ? strip.segment : 0
    height: strip !== null ? strip.height : 0

    Accessible.role: Accessible.PageTab
    Accessible.name: modelData
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: if (root.enabled) root.strip.chosen(root.index)

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: root.strip.chosen(root.index)
    }

    Loader {
        anchors.fill: parent
        sourceComponent: root.strip !== null ? root.strip.label : null
        onLoaded: (item as PillTabLabel).tab = root
    }
}
