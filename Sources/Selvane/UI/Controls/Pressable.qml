import QtQuick
import Selvane.Controls

/// What every button has in common: its keys, its words for assistive technology, its tooltip. A click leaves the
/// keyboard where it is; Tab brings it here, and then Space or Return presses.
PressArea {
    id: root

    property string tooltip: ""
    property string accessibleName: text

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.ceil(implicitContentHeight + topPadding + bottomPadding)

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    // Where the tooltip is the name, it isn't said twice.
    Accessible.description: !enabled ? Theme.unavailable : tooltip === accessibleName ? "" : tooltip
    Accessible.pressed: pressed
    Accessible.onPressAction: if (root.enabled) root.clicked()

    HoverTip {
        text: root.tooltip
        visible: !root.pressed && (root.pointed || root.visualFocus)
    }
}
