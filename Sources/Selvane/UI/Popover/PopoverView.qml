import QtQuick
import Selvane.Controls
import Selvane.Popover
import Selvane.Tasks

/// What opens from the status area: a column that holds everything needed during a working day. Its height is always
/// the same.
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

    // A press beside the controls ends what is being typed.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: controls.focusPrimaryButton()
    }

    HeaderView {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 20
        model: root.model.header
        phaseMenu: root.model.phaseMenu
    }

    SessionStatusRow {
        id: status

        x: Math.round((root.width - width) / 2)
        anchors.top: header.bottom
        anchors.topMargin: 12
        words: root.model.sessionStatus
    }

    TimerSection {
        id: timer

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: status.bottom
        anchors.topMargin: 12
        model: root.model
        onReleased: controls.focusPrimaryButton()
    }

    ControlsView {
        id: controls

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: timer.bottom
        anchors.topMargin: 20
        model: root.model.controls
    }

    MusicRow {
        id: music

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: controls.bottom
        anchors.topMargin: 20
        model: root.model.music
    }

    TabSwitcher {
        id: tabs

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: music.bottom
        anchors.topMargin: 12
        items: [root.model.tasksTitle, root.model.progressTitle]
        currentIndex: root.tab
        tooltip: root.model.tabTooltip
        onChosen: tab => root.tab = tab
    }

    Item {
        id: page

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: tabs.bottom
        height: 236

        TabPage {
            selected: root.tab === PopoverModel.Tasks

            TaskListView {
                anchors.fill: parent
                tasks: root.model.tasks
                onReleased: controls.focusPrimaryButton()
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
