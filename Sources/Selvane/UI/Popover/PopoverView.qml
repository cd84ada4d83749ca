import QtQuick
import Selvane.Controls
import Selvane.Popover

/// What opens from the status area: a column that holds everything needed during a working day. Its height is always
/// the same. Its parts are made one by one, from the lowest to the highest, while the engine reads the next one's files.
Item {
    id: root

    required property PopoverModel model
    property int tab: PopoverModel.Tasks

    function focusPrimaryButton() {
        controls.focusPrimaryButton();
    }

    implicitWidth: 348
    implicitHeight: page.y + page.height
    width: implicitWidth
    height: implicitHeight

    Shortcut {
        sequence: root.model.tasksShortcut
        onActivated: root.tab = PopoverModel.Tasks
    }

    Shortcut {
        sequence: root.model.progressShortcut
        onActivated: root.tab = PopoverModel.Progress
    }

    Shortcut {
        sequence: root.model.header.statisticsShortcut
        onActivated: root.model.header.openStatistics()
    }

    Shortcut {
        sequence: root.model.header.settingsShortcut
        onActivated: root.model.header.openSettings()
    }

    Shortcut {
        sequence: root.model.header.quitShortcut
        onActivated: root.model.header.quit()
    }

    Connections {
        target: timer.made

        function onReleased() {
            controls.focusPrimaryButton();
        }
    }

    Connections {
        target: tasks.made

        function onReleased() {
            controls.focusPrimaryButton();
        }
    }

    Connections {
        target: tabs.made

        function onChosen(tab: int) {
            root.tab = tab;
        }
    }

    // A press beside the controls ends what is being typed.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: controls.focusPrimaryButton()
    }

    LazyItem {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 20
        source: Qt.resolvedUrl("HeaderView.qml")
        properties: ({ model: root.model.header, phaseMenu: root.model.phaseMenu })
        wanted: true
    }

    SessionStatusRow {
        id: status

        x: Math.round((root.width - width) / 2)
        anchors.top: header.bottom
        anchors.topMargin: 12
        words: root.model.sessionStatus
    }

    LazyItem {
        id: timer

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: status.bottom
        anchors.topMargin: 12
        source: Qt.resolvedUrl("TimerSection.qml")
        properties: ({ model: root.model })
        wanted: true
    }

    ControlsView {
        id: controls

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: timer.bottom
        anchors.topMargin: 20
        model: root.model.controls
    }

    LazyItem {
        id: music

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: controls.bottom
        anchors.topMargin: 20
        source: Qt.resolvedUrl("MusicRow.qml")
        properties: ({ model: root.model.music })
        wanted: true
    }

    LazyItem {
        id: tabs

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: music.bottom
        anchors.topMargin: 12
        source: Qt.resolvedUrl("TabSwitcher.qml")
        properties: ({ model: root.model, currentIndex: root.tab })
        wanted: true
    }

    Item {
        id: page

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: tabs.bottom
        height: 236

        TabPage {
            selected: root.tab === PopoverModel.Tasks

            LazyItem {
                id: tasks

                anchors.fill: parent
                source: Qt.resolvedUrl("../Tasks/TaskListView.qml")
                properties: ({ tasks: root.model.tasks })
                wanted: root.model.isWhole
            }
        }

        TabPage {
            selected: root.tab === PopoverModel.Progress

            LazyItem {
                anchors.fill: parent
                source: Qt.resolvedUrl("../Progress/ProgressTab.qml")
                properties: ({ model: root.model.progress })
                wanted: root.tab === PopoverModel.Progress
                kept: true
            }
        }
    }
}
