import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The three buttons that drive the timer.
Row {
    id: root

    required property ControlsModel model

    /// Of the buttons at both sides, so that the main one stands in the middle.
    readonly property real sideWidth: Math.max(resetButton.implicitWidth, skipButton.implicitWidth)

    function focusPrimaryButton() {
        primaryButton.forceActiveFocus();
    }

    spacing: 10

    PillButton {
        id: resetButton

        anchors.verticalCenter: parent.verticalCenter
        width: root.sideWidth
        text: root.model.resetLabel
        tooltip: root.model.resetTooltip
        enabled: root.model.canReset
        onClicked: {
            // This button goes out of use, and the keyboard would go with it.
            if (activeFocus)
                root.focusPrimaryButton();
            root.model.reset();
        }
    }

    PillButton {
        id: primaryButton

        anchors.verticalCenter: parent.verticalCenter
        prominent: true
        focus: true
        text: root.model.primaryLabel
        onClicked: root.model.toggle()

        contentItem: CrossFadeText {
            words: root.model.primaryLabel
            response: 0.2
            color: Theme.textOnSolidPrimary
            font.pixelSize: 14
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    PillButton {
        id: skipButton

        anchors.verticalCenter: parent.verticalCenter
        width: root.sideWidth
        text: root.model.skipLabel
        tooltip: root.model.skipTooltip
        onClicked: root.model.skip()
    }
}
