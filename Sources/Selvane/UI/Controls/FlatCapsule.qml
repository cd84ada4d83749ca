import QtQuick
import Selvane.Controls

/// A capsule that is flat whatever the user chose for the glass.
CapsuleShape {
    id: root

    level: Look.Flat
    dark: Theme.dark
    highContrast: Theme.highContrast
    ringColor: Theme.focusRing
}
