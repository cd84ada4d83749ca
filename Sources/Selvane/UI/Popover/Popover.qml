import QtQuick
import QtQuick.Layouts
import Selvane.Popover

/// The popover: the timer and its controls in one column.
Rectangle {
    id: root

    required property PopoverModel model

    implicitWidth: 348
    implicitHeight: column.implicitHeight
    width: implicitWidth
    height: implicitHeight
    radius: model.isComposited ? 14 : 0
    color: Theme.surface
    border.width: 1
    border.color: Theme.windowEdge

    Accessible.role: Accessible.Pane
    Accessible.name: "Selvane"

    Binding {
        target: Theme
        property: "dark"
        value: root.model.isDark
    }

    Shortcut {
        sequence: "Escape"
        onActivated: root.model.cancel()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: root.model.quit()
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 8
            Layout.topMargin: 20

            Text {
                text: root.model.phaseTitle
                color: Theme.primaryText
                font.pixelSize: 13
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            Item {
                Layout.fillWidth: true
            }

            TextButton {
                text: "Quit"
                tooltip: "Quit Selvane (Ctrl+Q)"
                accessibleName: "Quit Selvane"
                onClicked: root.model.quit()
            }
        }

        TimeDigits {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 16
            time: root.model.time
            opacity: root.model.isPaused ? 0.5 : 1
            Accessible.role: Accessible.StaticText
            Accessible.name: root.model.timeDescription
        }

        Text {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 4
            text: root.model.sessionStatus
            color: Theme.secondaryText
            font.pixelSize: 12
            font.weight: Font.Medium
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 20
            spacing: 10

            PillButton {
                text: root.model.resetLabel
                tooltip: root.model.resetTooltip
                enabled: root.model.canReset
                onClicked: root.model.reset()
            }

            PillButton {
                prominent: true
                focus: true
                text: root.model.primaryLabel
                onClicked: root.model.toggle()
            }

            PillButton {
                text: root.model.skipLabel
                tooltip: root.model.skipTooltip
                onClicked: root.model.skip()
            }
        }

        Text {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 18
            Layout.bottomMargin: root.model.saveError === "" ? 18 : 6
            text: root.model.today
            color: Theme.secondaryText
            font.pixelSize: 12
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Text {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.bottomMargin: 18
            visible: text !== ""
            text: root.model.saveError
            color: Theme.primaryText
            font.pixelSize: 12
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
}
