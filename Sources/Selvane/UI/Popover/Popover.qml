import QtQuick
import QtQuick.Layouts
import Selvane.Controls
import Selvane.Popover
import Selvane.Timer

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
    Accessible.name: root.model.name

    Binding {
        target: Theme
        property: "look"
        value: root.model.look
    }

    Connections {
        target: root.model

        function onAboutToShow() {
            primaryButton.forceActiveFocus();
        }
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
                text: root.model.quitLabel
                tooltip: root.model.quitTooltip
                accessibleName: root.model.quitDescription
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
                onClicked: {
                    root.model.reset();
                    // This button is out of use now and would keep the keyboard.
                    primaryButton.forceActiveFocus();
                }
            }

            PillButton {
                id: primaryButton

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

        // What went wrong takes the place of what went well, so that the panel keeps its height.
        Text {
            id: footer

            Layout.fillWidth: true
            Layout.preferredHeight: 32
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.topMargin: 12
            Layout.bottomMargin: 12
            text: root.model.footer
            color: root.model.hasProblem ? Theme.primaryText : Theme.secondaryText
            font.pixelSize: 12
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            Accessible.role: root.model.hasProblem ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text

            HoverHandler {
                id: footerHover
            }

            HoverTip {
                text: footer.text
                visible: footerHover.hovered && footer.truncated
            }
        }
    }
}
