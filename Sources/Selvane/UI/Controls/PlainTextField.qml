import QtQuick
import Selvane.Controls

/// A line of text to type, without a frame. Its name for assistive technology is the placeholder unless another is set.
TextInput {
    id: root

    property string placeholderText: ""
    property color placeholderTextColor: Theme.secondaryText
    property string accessibleName: placeholderText
    /// A placeholder that is too long is made smaller instead of cut.
    property bool shrinksPlaceholder: false

    // Text that is too long moves with the cursor.
    clip: true
    activeFocusOnTab: true
    color: enabled ? Theme.primaryText : Theme.tertiaryText
    selectionColor: Theme.ink(0.18)
    selectedTextColor: Theme.primaryText
    selectByMouse: true
    font.pixelSize: 14
    verticalAlignment: TextInput.AlignVCenter

    Accessible.role: Accessible.EditableText
    Accessible.name: accessibleName

    Text {
        id: placeholder

        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        color: root.placeholderTextColor
        font: root.font
        horizontalAlignment: root.horizontalAlignment
        verticalAlignment: Text.AlignVCenter
        elide: root.shrinksPlaceholder ? Text.ElideNone : Text.ElideRight
        fontSizeMode: root.shrinksPlaceholder ? Text.HorizontalFit : Text.FixedSize
        minimumPixelSize: 8
        Accessible.ignored: true
    }

    // The pointer of text; and a press of a button that does nothing here isn't one beside the field.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons & ~(Qt.LeftButton | Qt.MiddleButton)
        cursorShape: Qt.IBeamCursor
    }
}
