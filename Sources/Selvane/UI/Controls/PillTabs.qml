import QtQuick
import Selvane.Controls

/// A row of choices on a capsule, one of them in force. `chosen` tells of a choice; the owner then sets
/// `currentIndex`. The keyboard comes to the row as a whole, and the arrows choose.
KeyboardStop {
    id: root

    required property list<string> items
    required property int currentIndex
    property real minHeight: 24
    property string tooltip: ""
    property string accessibleName: items[currentIndex] ?? ""
    /// Draws an item; PillTabLabel and what is made of it.
    property Component label: PillTabLabel {}

    readonly property bool hovered: hover.hovered

    signal chosen(int index)

    implicitWidth: 200
    implicitHeight: minHeight + 6

    Keys.onLeftPressed: strip.choose(root.currentIndex - 1)
    Keys.onRightPressed: strip.choose(root.currentIndex + 1)

    Accessible.role: Accessible.PageTabList
    Accessible.name: accessibleName
    Accessible.description: enabled ? tooltip : Theme.unavailable
    Accessible.focusable: true
    Accessible.focused: activeFocus

    CapsuleSurface {
        anchors.fill: parent
        anchors.margins: -4
        spread: 4
        ringed: root.visualFocus
    }

    PillTabStrip {
        id: strip

        anchors.fill: parent
        anchors.margins: 3
        count: root.items.length
        currentIndex: root.currentIndex
        label: root.label
        onChosen: index => root.chosen(index)

        // In segments: where the row becomes wider, the highlight is there at once.
        SpringValue {
            id: place

            target: Math.max(root.currentIndex, 0)
            response: 0.25
            dampingFraction: 0.85
            animated: !Theme.reducesMotion
        }

        RoundedShape {
            // Room for the shadow.
            spread: 5
            x: Math.round(place.value * strip.segment) - 5
            y: -5
            width: Math.round(strip.segment) + 10
            height: strip.height + 10
            visible: root.currentIndex >= 0
            color: Theme.selectedSegment
            edgeColor: Theme.highContrast ? Theme.hairline : "transparent"
            shadowColor: Theme.segmentShadow
            shadowRadius: 3
            shadowOffset: 1
        }

        Repeater {
            model: root.items

            PillTab {}
        }
    }

    HoverHandler {
        id: hover
    }

    HoverTip {
        text: root.tooltip
        visible: root.hovered || root.visualFocus
    }
}
