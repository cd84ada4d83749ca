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
        visible: name !== ""
        name: root.name
        size: 13
        weight: Symbol.Medium
        color: root.hovering ? Theme.primaryText : Theme.secondaryText

        Behavior on name {
            enabled: !Theme.reducesMotion

            SequentialAnimation {
                SpringMotion {
                    target: symbol
                    property: "scale"
                    to: 0
                    response: 0.15
                    dampingFraction: 1
                }
                PropertyAction {}
                SpringMotion {
                    target: symbol
                    property: "scale"
                    to: 1
                    response: 0.2
                    dampingFraction: 0.85
                }
            }
        }
    }

    Rectangle {
        anchors.centerIn: parent
        visible: symbol.name === ""
        width: 3
        height: 3
        radius: 1.5
        color: Theme.primaryText
        opacity: root.hovering ? 0.8 : 0.3
    }
}
