import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// The field in which a task gets another title. Takes the keyboard as it appears.
PlainTextField {
    id: root

    required property TaskListModel tasks

    padding: 0
    placeholderText: tasks.titlePlaceholder
    text: tasks.draft

    // Assistive technology sets a text without typing it.
    onTextChanged: tasks.draft = text
    onAccepted: tasks.commitRename()
    onActiveFocusChanged: if (!activeFocus) tasks.commitRename()

    // Before the window takes it for itself.
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
    Keys.onEscapePressed: tasks.cancelRename()

    Component.onCompleted: {
        forceActiveFocus();
        selectAll();
    }
}
