import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// The line below the tasks that takes a new one.
Item {
    id: root

    required property TaskListModel tasks

    /// Escape was pressed: the keyboard is free for another.
    signal released

    /// Gives the keyboard to the field.
    function takeKeyboard() {
        field.forceActiveFocus();
    }

    implicitHeight: field.implicitHeight

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.IBeamCursor
        onPressed: field.forceActiveFocus()
    }

    Symbol {
        id: plus

        x: (18 - width) / 2
        anchors.verticalCenter: parent.verticalCenter
        name: "plus"
        size: 12
        weight: Symbol.Semibold
        color: Theme.secondaryText
    }

    PlainTextField {
        id: field

        anchors.left: parent.left
        anchors.leftMargin: 28
        anchors.right: parent.right
        padding: 0
        placeholderText: root.tasks.addPlaceholder

        onAccepted: {
            root.tasks.add(text);
            clear();
        }

        // Before the window takes it for itself.
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
        Keys.onEscapePressed: {
            clear();
            focus = false;
            root.released();
        }
    }
}
