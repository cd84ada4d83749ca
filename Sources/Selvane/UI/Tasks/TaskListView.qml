pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// The day's tasks: a heading, the list, and a field to add one.
FocusScope {
    id: root

    required property TaskListModel tasks

    /// The user is done with the field for a new task: the keyboard is free for another.
    signal released

    implicitWidth: 348
    implicitHeight: 236

    Item {
        id: heading

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 16
        height: 14

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.tasks.heading
            color: Theme.secondaryText
            font.pixelSize: 11
            font.weight: Font.DemiBold
            font.letterSpacing: 1.1
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        TextButton {
            id: clearButton

            anchors.right: count.left
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            visible: root.tasks.canClear
            text: root.tasks.clearLabel
            fontSize: Theme.caption
            fontWeight: Font.Normal
            onClicked: {
                // The button goes with the last done task; the keyboard would go with it.
                if (activeFocus)
                    field.takeKeyboard();
                root.tasks.clearDone();
            }
        }

        Text {
            id: count

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.tasks.count
            color: Theme.secondaryText
            font.pixelSize: Theme.caption
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.ignored: text === ""
        }
    }

    TaskListInput {
        id: input

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: heading.bottom
        anchors.topMargin: 4
        anchors.bottom: field.top
        anchors.bottomMargin: 8
        tasks: root.tasks
        content: list.contentItem
        rowHeight: 34
        originY: list.originY
        contentY: list.contentY
        currentRow: list.currentIndex

        onEmptied: field.takeKeyboard()
        onRowAdded: row => list.positionViewAtIndex(row, ListView.Contain)
        onRowRequested: row => list.currentIndex = row
        onScrollRequested: y => list.contentY = y

        onLetGo: settling.restart()
        onSettled: settling.stop()

        SpringMotion {
            id: settling

            target: input
            property: "liftedY"
            to: input.restY
            response: 0.25
            dampingFraction: 0.85
            onFinished: input.settle()
        }

        ListView {
            id: list

            anchors.fill: parent
            model: root.tasks
            clip: true
            reuseItems: true
            keyNavigationEnabled: false
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            visible: count > 0
            add: appearing
            remove: vanishing
            move: making
            displaced: making

            Accessible.role: Accessible.List
            Accessible.name: root.tasks.name

            // What the user sees happen takes its time; all else has happened at once. A row that is moved while it
            // appears must not stay half there.
            Transition {
                id: appearing

                enabled: root.tasks.isAnimated

                SpringMotion {
                    property: "opacity"
                    from: 0
                    to: 1
                    response: 0.5
                    dampingFraction: 0.85
                }
            }

            Transition {
                id: vanishing

                enabled: root.tasks.isAnimated

                SpringMotion {
                    property: "opacity"
                    to: 0
                    response: 0.5
                    dampingFraction: 0.85
                }
            }

            Transition {
                id: making

                enabled: root.tasks.isAnimated

                SpringMotion {
                    property: "y"
                    response: 0.5
                    dampingFraction: 0.85
                }

                SpringMotion {
                    property: "opacity"
                    to: 1
                    response: 0.5
                    dampingFraction: 0.85
                }
            }

            delegate: TaskRow {
                width: ListView.view.width
                height: input.rowHeight
                tasks: root.tasks
                input: input
            }
        }

        ScrollThumb {
            anchors.top: list.top
            anchors.right: list.right
            anchors.bottom: list.bottom
            view: list
        }

        EdgeFade {
            anchors.top: list.top
            visible: list.visible && !list.atYBeginning
            rotation: 180
        }

        EdgeFade {
            anchors.bottom: list.bottom
            visible: list.visible && !list.atYEnd
        }

        // Each menu exists only while it is open.
        LazyItem {
            x: input.menuX
            y: input.menuY
            source: Qt.resolvedUrl("OpenTaskMenu.qml")
            properties: ({ input: input })
            wanted: input.menu === TaskListInput.OpenTaskMenu
        }

        LazyItem {
            x: input.menuX
            y: input.menuY
            source: Qt.resolvedUrl("DoneTaskMenu.qml")
            properties: ({ input: input })
            wanted: input.menu === TaskListInput.DoneTaskMenu
        }
    }

    SpringValue {
        id: emptiness

        target: root.tasks.isEmpty ? 1 : 0
        response: 0.5
        animated: !Theme.reducesMotion
    }

    Column {
        anchors.centerIn: input
        spacing: 6
        visible: opacity > 0
        opacity: emptiness.value

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "checklist"
            size: 22
            weight: Symbol.Light
            color: Theme.secondaryText
        }

        Text {
            text: root.tasks.emptyText
            color: Theme.secondaryText
            font.pixelSize: Theme.callout
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.ignored: !root.tasks.isEmpty
        }
    }

    AddTaskField {
        id: field

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.bottomMargin: 16
        tasks: root.tasks
        onReleased: root.released()
    }
}
