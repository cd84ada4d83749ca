import QtQuick
import Selvane.Controls

/// The icon of a phase, or a dot where none was chosen. A new icon takes the place of the old one softly.
Item {
    id: root

    required property string name
    required property bool hovering

    Symbol {
        id: symbol

        anchors.centerIn: parent
        visible: shown !== ""
        name: root.name
        replaces: !Theme.reducesMotion
        size: 13
        weight: Symbol.Medium
        color: root.hovering ? Theme.primaryText : Theme.secondaryText
    }

    Rectangle {
        anchors.centerIn: parent
        visible: symbol.shown === ""
        width: 3
        height: 3
        radius: 1.5
        color: Theme.primaryText
        opacity: root.hovering ? 0.8 : 0.3
    }
}
