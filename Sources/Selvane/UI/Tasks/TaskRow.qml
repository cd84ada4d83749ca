import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// A task of the list.
FocusScope {
    id: root

    required property TaskListModel tasks
    required property TaskListInput input

    required property int index
    required property string taskID
    required property string title
    required property bool isDone
    required property bool isCurrent
    required property int estimatedPomodoros
    required property int completedPomodoros
    required property string sessions
    required property string description
    required property bool isEditing
    required property bool isLifted

    /// False while the row waits for another task, whose differences from the last one are no changes.
    property bool inUse: true
    /// From 0, open, to 1, done.
    readonly property real doneness: tick.value

    z: isLifted ? 1 : 0
    // One stop of the list; it can't end while the keyboard is still there.
    activeFocusOnTab: ListView.isCurrentItem || activeFocus

    // Keys are for the current row; it is the one that has the keyboard, also where the mouse brought it.
    onActiveFocusChanged: if (activeFocus) input.enterRow(index)

    ListView.onPooled: inUse = false
    ListView.onReused: {
        opacity = 1;
        inUse = true;
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: description
    Accessible.focusable: true
    // A row that waits isn't drawn, but would be told.
    Accessible.ignored: !inUse
    Accessible.onPressAction: root.input.requestMenu(root.index)

    SpringValue {
        id: tick

        target: root.isDone ? 1 : 0
        response: 0.5
        dampingFraction: 0.85
        animated: root.inUse && !Theme.reducesMotion
    }

    Item {
        id: content

        // Where the hand is, wherever the list has its place by now.
        y: root.isLifted ? root.input.liftedY - root.y : 0
        width: root.width
        height: root.height
        visible: root.inUse

        RoundedShape {
            anchors.fill: parent
            anchors.leftMargin: 8 - spread
            anchors.rightMargin: 8 - spread
            anchors.topMargin: -spread
            anchors.bottomMargin: -spread
            visible: root.isLifted
            spread: 16
            radius: 8
            color: Theme.popup
            edgeColor: Theme.windowEdge
            shadowColor: Theme.popupShadow
            shadowRadius: 10
            shadowOffset: 3
        }

        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            visible: root.activeFocus && !root.isEditing && root.input.isByKeyboard
            radius: 8
            color: "transparent"
            border.width: 2
            border.color: Theme.focusRing
        }

        CheckCircle {
            id: circle

            x: 16
            anchors.verticalCenter: parent.verticalCenter
            isOn: root.isDone
            animated: root.inUse
            label: root.tasks.checkLabel(root.isDone)
            onClicked: root.tasks.toggle(root.taskID)
        }

        TaskTitle {
            id: titleText

            anchors.left: circle.right
            anchors.leftMargin: 10
            anchors.right: marks.left
            anchors.rightMargin: marks.width > 0 ? 10 : 0
            height: parent.height
            visible: !root.isEditing
            text: root.title
            doneness: root.doneness

            TapHandler {
                acceptedButtons: Qt.LeftButton
                onDoubleTapped: root.tasks.beginRename(root.taskID)
            }
        }

        LazyItem {
            anchors.left: titleText.left
            anchors.right: titleText.right
            anchors.verticalCenter: content.verticalCenter
            source: Qt.resolvedUrl("TitleEditor.qml")
            properties: ({ tasks: root.tasks })
            wanted: root.isEditing
        }

        Row {
            id: marks

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            CurrentMark {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.isCurrent
                tooltip: root.tasks.currentTooltip
            }

            SessionCount {
                anchors.verticalCenter: parent.verticalCenter
                // An odd height: at scale 2 half a unit is a pixel.
                anchors.alignWhenCentered: false
                visible: root.estimatedPomodoros > 0
                done: root.completedPomodoros
                total: root.estimatedPomodoros
                tooltip: root.sessions
            }
        }
    }
}
