import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The window of the popover: its card and, where the desktop lets it, the card's shadow in a clear margin.
FocusScope {
    id: root

    required property PopoverModel model

    readonly property int margin: model.shadowMargin

    width: view.width + 2 * margin
    height: view.height + 2 * margin
    focus: true

    Keys.onEscapePressed: root.model.cancel()

    Accessible.role: Accessible.Pane
    Accessible.name: root.model.name

    Binding {
        target: Theme
        property: "look"
        value: root.model.look
    }

    Connections {
        target: root.model

        function onMainButtonWanted() {
            view.focusPrimaryButton();
        }
    }

    // The shadow may lie over the status area. Closed by the press alone, the panel would leave the release to the
    // status item below, which takes that for a click and opens it again.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onReleased: root.model.turnAway()
    }

    PopoverBackdrop {
        anchors.fill: parent
        margin: root.margin
        radius: root.model.cornerRadius
    }

    PopoverView {
        id: view

        x: root.margin
        y: root.margin
        model: root.model
    }
}
