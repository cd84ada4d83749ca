import QtQuick
import Selvane.Popover
import Selvane.Timer

/// The timer's face, the task that it counts for, and the one line that says what matters now.
Item {
    id: root

    required property PopoverModel model

    /// A control that is gone had the keyboard.
    signal released

    implicitWidth: 316
    implicitHeight: note.y + note.height

    TimerFace {
        id: face

        anchors.horizontalCenter: parent.horizontalCenter
        // At once, although the face would change its height softly: the window follows in one step.
        height: root.model.face.frameHeight
        model: root.model.face
    }

    CurrentTaskPicker {
        id: picker

        anchors.horizontalCenter: parent.horizontalCenter
        y: face.height + 4
        model: root.model.taskPicker
    }

    SessionNote {
        id: note

        anchors.horizontalCenter: parent.horizontalCenter
        y: picker.y + picker.height + 2
        model: root.model.note
        onReleased: root.released()
    }
}
