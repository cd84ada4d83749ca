import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A row of choices on a capsule, one of them in force. `chosen` tells of a choice; the owner then sets
/// `currentIndex`. The keyboard comes to the row as a whole, and the arrows choose.
T.Control {
    id: root

    required property list<string> items
    required property int currentIndex
    property real minHeight: 24
    property string tooltip: ""
    property string accessibleName: ""
    /// Draws an item; PillTabLabel and what is made of it.
    property Component label: PillTabLabel {}

    readonly property real segment: items.length > 0 ? availableWidth / items.length : 0

    signal chosen(int index)

    implicitWidth: 200
    implicitHeight: minHeight + topPadding + bottomPadding
    padding: 3
    topInset: -4
    leftInset: -4
    rightInset: -4
    bottomInset: -4
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Keys.onLeftPressed: root.chosen(Math.max(root.currentIndex - 1, 0))
    Keys.onRightPressed: root.chosen(Math.min(root.currentIndex + 1, root.items.length - 1))

    Accessible.role: Accessible.PageTabList
    Accessible.name: accessibleName
    Accessible.description: tooltip

    background: CapsuleSurface {
        spread: 4
        ringed: root.visualFocus
    }

    contentItem: PillTabStrip {
        count: root.items.length
        currentIndex: root.currentIndex
        label: root.label
        onChosen: index => root.chosen(index)

        RoundedShape {
            // Room for the shadow.
            spread: 5
            x: root.currentIndex * root.segment - 5
            y: -5
            width: root.segment + 10
            height: root.availableHeight + 10
            visible: root.currentIndex >= 0
            color: Theme.selectedSegment
            edgeColor: Theme.highContrast ? Theme.hairline : "transparent"
            shadowColor: Theme.segmentShadow
            shadowRadius: 3
            shadowOffset: 1

            Behavior on x {
                SpringMotion {
                    response: 0.25
                    dampingFraction: 0.85
                }
            }
        }

        Repeater {
            model: root.items

            PillTab {}
        }
    }

    HoverTip {
        text: root.tooltip
        visible: root.hovered || root.visualFocus
    }
}
