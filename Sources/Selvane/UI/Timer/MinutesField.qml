import QtQuick
import QtQuick.Templates as T
import Selvane.Controls
import Selvane.Timer

/// The minutes being typed, before seconds that nobody types.
Item {
    id: root

    required property MinutesDraft draft
    required property real size

    implicitWidth: field.width + seconds.width
    implicitHeight: seconds.implicitHeight

    T.TextField {
        id: field

        anchors.baseline: seconds.baseline
        // Three digits need more room than two.
        width: Math.max(1.25 * root.size, Math.ceil(contentWidth) + 2)
        implicitHeight: contentHeight
        padding: 0
        text: root.draft.text
        color: Theme.primaryText
        selectionColor: Theme.ink(0.18)
        selectedTextColor: Theme.primaryText
        selectByMouse: true
        font.family: seconds.font.family
        font.pixelSize: root.size
        font.weight: Font.DemiBold
        font.letterSpacing: -0.02 * root.size
        horizontalAlignment: TextInput.AlignRight
        verticalAlignment: TextInput.AlignVCenter
        inputMethodHints: Qt.ImhDigitsOnly
        placeholderText: root.draft.label

        Accessible.role: Accessible.EditableText
        Accessible.name: root.draft.label

        // Assistive technology sets a text without typing it.
        onTextChanged: root.draft.text = text
        onAccepted: root.draft.save()
        onActiveFocusChanged: root.draft.focusChanged(activeFocus)
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
        Keys.onEscapePressed: root.draft.cancel()
        Component.onCompleted: begin()

        function begin() {
            forceActiveFocus(Qt.MouseFocusReason);
            selectAll();
        }

        Text {
            anchors.fill: parent
            visible: field.length === 0
            text: field.placeholderText
            color: Theme.tertiaryText
            font.pixelSize: root.size
            font.weight: Font.DemiBold
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
            horizontalAlignment: Text.AlignRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    TimeText {
        id: seconds

        anchors.left: field.right
        time: ":00"
        size: root.size
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
}
