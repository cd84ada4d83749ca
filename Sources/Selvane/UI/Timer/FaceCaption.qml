import QtQuick
import Selvane.Controls

/// The word that names the phase, in spaced capitals.
CrossFadeText {
    id: root

    height: topPadding + 14
    // The space after the last letter would move the word to the left.
    leftPadding: font.letterSpacing
    verticalAlignment: Text.AlignVCenter
    color: Theme.secondaryText
    font.pixelSize: 11
    font.weight: Font.DemiBold
    font.letterSpacing: 1.1
}
