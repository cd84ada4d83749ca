import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A row of a PopupMenu. `marked` rows carry a checkmark; a menu that marks rows sets `markable` for all of them, so that
/// their words stand below each other. A `hint` can't be chosen and says why something can't be done. A `destructive`
/// row is told by its weight.
T.MenuItem {
    id: root

    property bool markable: false
    property bool marked: false
    property bool hint: false
    property bool destructive: false
    /// The keys that do the same, only to be read.
    property string shortcut: ""

    readonly property color words: root.hint ? Theme.secondaryText : root.enabled ? Theme.primaryText : Theme.tertiaryText

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: 26
    leftPadding: markable ? 26 : 10
    rightPadding: subMenu !== null ? 26 : 10
    enabled: !hint
    hoverEnabled: true

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.description: enabled || hint ? shortcut : Theme.unavailable
    Accessible.checkable: markable
    Accessible.checked: marked
    Accessible.onPressAction: if (root.enabled) root.clicked()

    contentItem: PopupMenuLabel {
        text: root.text
        shortcut: root.shortcut
        color: root.words
        weight: root.destructive ? Font.DemiBold : Font.Normal
    }

    indicator: Symbol {
        x: 9
        y: Math.round((root.height - height) / 2)
        visible: root.marked
        name: "checkmark"
        size: 10
        weight: Symbol.Semibold
        color: root.words
    }

    arrow: Symbol {
        x: root.width - width - 7
        y: Math.round((root.height - height) / 2)
        visible: root.subMenu !== null
        rotation: -90
        name: "chevron.down"
        size: 9
        weight: Symbol.Semibold
        color: Theme.secondaryText
    }

    background: RoundedShape {
        radius: 6
        color: Theme.ink(root.highlighted && root.enabled ? (root.pressed ? 0.14 : 0.09) : 0)
        edgeColor: Theme.highContrast && root.highlighted && root.enabled ? Theme.hairline : "transparent"
    }
}
