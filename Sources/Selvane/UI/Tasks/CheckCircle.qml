import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// The circle that ticks a task off.
Item {
    id: root

    required property bool isOn
    /// What a press does, in words.
    required property string label
    /// Whether a change of `isOn` has just happened and so is to be seen happening.
    property bool animated: true

    signal clicked

    implicitWidth: 18
    implicitHeight: 18

    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()

    SpringValue {
        id: tick

        target: root.isOn ? 1 : 0
        response: 0.25
        dampingFraction: 0.85
        animated: root.animated && !Theme.reducesMotion
    }

    CheckShape {
        id: shape

        anchors.fill: parent
        progress: tick.value
        ringColor: Theme.secondaryText
        fillColor: Theme.primary
    }

    Symbol {
        anchors.centerIn: parent
        name: "checkmark"
        size: 10
        weight: Symbol.Bold
        color: Theme.inverse
        opacity: shape.markOpacity
        scale: shape.markScale
        visible: opacity > 0
    }

    MouseArea {
        anchors.fill: parent
        containmentMask: shape
        onClicked: root.clicked()
    }
}
