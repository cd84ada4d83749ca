import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A line of text to type, without a frame. Its name for assistive technology is the placeholder unless another is set.
T.TextField {
    id: root

    property string accessibleName: placeholderText
    /// A placeholder that is too long is made smaller instead of cut.
    property bool shrinksPlaceholder: false

    implicitWidth: Math.ceil(Math.max(contentWidth, placeholder.implicitWidth) + leftPadding + rightPadding)
    implicitHeight: Math.ceil(Math.max(contentHeight, placeholder.implicitHeight) + topPadding + bottomPadding)
    color: enabled ? Theme.primaryText : Theme.tertiaryText
    placeholderTextColor: Theme.secondaryText
    selectionColor: Theme.ink(0.18)
    selectedTextColor: Theme.primaryText
    selectByMouse: true
    // Controls take the desktop's font, text the program's.
    font.family: Theme.fontFamily
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
}
