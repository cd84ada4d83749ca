import QtQuick
import Selvane.Controls

/// A capsule behind something, in the glass that the user chose. `interactive` glass answers to `hovered` and
/// `pressed`; `ringed` tells that the keyboard is here; `color` takes the place of the glass.
CapsuleShape {
    id: root

    level: Theme.glass
    dark: Theme.dark
    highContrast: Theme.highContrast
    ringColor: Theme.focusRing
}
