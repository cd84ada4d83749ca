import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The minutes being typed, before seconds that nobody types.
Item {
    id: root

    required property MinutesDraft draft
    required property real size

    implicitWidth: field.width + seconds.width
    implicitHeight: seconds.implicitHeight

    PlainTextField {
        id: field

        anchors.baseline: seconds.baseline
        width: root.draft.fieldWidth(root.size, contentWidth)
        padding: 0
        text: root.draft.text
        font.pixelSize: root.size
        font.weight: Font.DemiBold
        font.letterSpacing: -0.02 * root.size
        horizontalAlignment: TextInput.AlignRight
        inputMethodHints: Qt.ImhDigitsOnly
        placeholderText: root.draft.label
        placeholderTextColor: Theme.tertiaryText
        shrinksPlaceholder: true
        validator: MinutesValidator {}

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
