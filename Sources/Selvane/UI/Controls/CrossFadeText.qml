import QtQuick
import Selvane.Controls

/// Words that fade into other words within the response of a spring. Assistive technology hears of the new ones at
/// once.
Text {
    id: root

    required property string words
    property real response: 0.25
    /// Whether the words that come now take the place of the former softly.
    property bool isSoft: true
    /// Words that nobody sees change at once.
    readonly property bool fades: isSoft && !Theme.reducesMotion && Window.active

    text: words
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: words

    // Also a change that isn't to fade ends the fading of one that is.
    Behavior on text {
        SequentialAnimation {
            NumberAnimation {
                target: root
                property: "opacity"
                to: 0
                duration: root.fades ? root.response * 400 : 0
                easing.type: Easing.InQuad
            }

            PropertyAction {}

            NumberAnimation {
                target: root
                property: "opacity"
                to: 1
                duration: root.fades ? root.response * 600 : 0
                easing.type: Easing.OutQuad
            }
        }
    }
}
