import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A row of a PopupMenu. A `markable` row carries a checkmark while it is `marked`; the menu leaves room for that in front
/// of all its rows. A `hint` can't be chosen and says why something can't be done; assistive technology knows it as
/// text. A `destructive` row is told by its weight.
T.MenuItem {
    id: root

    property bool markable: false
    property bool marked: false
    property bool hint: false
    property bool destructive: false
    /// The keys that do the same, only to be read.
    property string shortcut: ""

    readonly property MeasuredMenu measuredMenu: menu as MeasuredMenu
    readonly property color words: root.hint ? Theme.secondaryText : root.enabled ? Theme.primaryText : Theme.tertiaryText

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: 26
    leftPadding: measuredMenu !== null && measuredMenu.measure.markable ? 26 : 10
    rightPadding: subMenu !== null ? 26 : 10
    enabled: !hint
    hoverEnabled: true

    Accessible.ignored: hint
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.description: enabled ? shortcut : Theme.unavailable
    Accessible.checkable: markable
    Accessible.checked: marked
    Accessible.onPressAction: if (root.enabled) root.clicked()

    contentItem: PopupMenuLabel {
        text: root.text
        shortcut: root.shortcut
        color: root.words
        weight: root.destructive ? Font.DemiBold : Font.Normal

        Accessible.ignored: !root.hint
        Accessible.role: Accessible.StaticText
        Accessible.name: root.text
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
