pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The time; while the timer rests, a click turns it into a field for another number of minutes.
Item {
    id: root

    required property TimerFaceModel model
    property real size: 40
    property real maximumWidth: 0

    implicitWidth: time.implicitWidth
    implicitHeight: time.implicitHeight

    MinutesDraft {
        id: minutes

        face: root.model
        onKeyboardFreed: keyboard.giveBack()
    }

    KeyboardLoan {
        id: keyboard
    }

    TimeText {
        id: time

        anchors.centerIn: parent
        visible: !minutes.isEditing
        time: root.model.time
        size: root.size
        maximumWidth: root.maximumWidth
        isRunning: root.model.isRunning
        reducesMotion: Theme.reducesMotion
        color: Theme.primaryText
        Accessible.role: Accessible.StaticText
        Accessible.name: root.model.timeLabel
        Accessible.ignored: root.model.canEdit
    }

    Repeater {
        model: root.model.canEdit ? 1 : 0

        TimeButton {
            anchors.fill: parent
            visible: !minutes.isEditing
            tooltip: root.model.editTooltip
            hint: root.model.editHint
            accessibleName: root.model.timeLabel
            onClicked: {
                keyboard.take(root);
                minutes.startEditing(root.model.remaining());
            }
        }
    }

    LazyItem {
        anchors.centerIn: parent
        source: Qt.resolvedUrl("MinutesField.qml")
        properties: ({ draft: minutes, size: root.size })
        wanted: minutes.isEditing
    }
}
