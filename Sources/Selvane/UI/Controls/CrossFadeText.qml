import QtQuick
import Selvane.Controls

/// Words that fade into other words, as fast as a spring of that response settles. Assistive technology hears of the
/// new ones at once.
Text {
    id: root

    required property string words
    property real response: 0.25
    /// Words that nobody sees change at once.
    readonly property bool fades: !Theme.reducesMotion && Window.active

    text: words
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: words

    Behavior on text {
        enabled: root.fades

        SequentialAnimation {
            NumberAnimation {
                target: root
                property: "opacity"
                to: 0
                duration: root.response * 400
                easing.type: Easing.InQuad
            }

            PropertyAction {}

            NumberAnimation {
                target: root
                property: "opacity"
                to: 1
                duration: root.response * 600
                easing.type: Easing.OutQuad
            }
        }
    }
}
