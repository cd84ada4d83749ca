import QtQuick
import Selvane.Controls

/// Where the timer is in its cycle.
CrossFadeText {
    id: root

    width: Math.ceil(implicitWidth)
    color: Theme.secondaryText
    font.pixelSize: 12
    font.weight: Font.Medium
}
