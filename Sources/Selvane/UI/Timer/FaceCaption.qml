import QtQuick
import Selvane.Controls

/// The word that names the phase, in spaced capitals. A new word takes the place of the old one softly.
Text {
    id: root

    required property string words

    text: words
    height: topPadding + 14
    // The space after the last letter would move the word to the left.
    leftPadding: font.letterSpacing
    verticalAlignment: Text.AlignVCenter
    color: Theme.secondaryText
    font.pixelSize: 11
    font.weight: Font.DemiBold
    font.letterSpacing: 1.1
    Accessible.role: Accessible.StaticText
    Accessible.name: words

    Behavior on text {
        id: change

        enabled: !Theme.reducesMotion

        SequentialAnimation {
            SpringMotion {
                target: root
                property: "opacity"
                to: 0
                response: 0.125
                dampingFraction: 1
            }
            PropertyAction {}
            SpringMotion {
                target: root
                property: "opacity"
                to: 1
                response: 0.125
                dampingFraction: 1
            }
        }
    }
}
