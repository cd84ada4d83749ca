pragma Singleton

import QtQuick
import Selvane.Controls

/// The palette: one ink on one ground, light or dark. There is no accent colour; emphasis is opacity and weight.
QtObject {
    id: root

    /// What the windows follow; set by the first of them.
    property Look look: null

    readonly property bool dark: look !== null && look.isDark
    readonly property bool highContrast: look !== null && look.isHighContrast
    readonly property bool reducesMotion: look !== null && look.reducesMotion
    readonly property int glass: look !== null ? look.glass : Look.Flat

    // Grounds
    readonly property color surface: dark ? (highContrast ? "black" : Qt.rgba(0.05, 0.05, 0.055, 1)) : (highContrast ? "white" : Qt.rgba(0.985, 0.985, 0.985, 1))
    readonly property color backdrop: dark ? Qt.rgba(0, 0, 0, 0.75) : Qt.rgba(1, 1, 1, 0.88)
    readonly property color card: dark ? Qt.rgba(1, 1, 1, 0.08) : Qt.rgba(0, 0, 0, 0.045)
    readonly property color cardPressed: dark ? Qt.rgba(1, 1, 1, 0.14) : Qt.rgba(0, 0, 0, 0.09)
    readonly property color hairline: highContrast ? ink(0.6) : dark ? Qt.rgba(1, 1, 1, 0.07) : Qt.rgba(0, 0, 0, 0.07)
    readonly property color selectedSegment: dark ? Qt.rgba(1, 1, 1, 0.16) : "white"
    readonly property color inverse: dark ? Qt.rgba(0.06, 0.06, 0.07, 1) : "white"
    readonly property color windowEdge: highContrast ? ink(1) : dark ? Qt.rgba(1, 1, 1, 0.16) : Qt.rgba(0, 0, 0, 0.16)

    // Inks
    readonly property color solidPrimary: dark ? "white" : highContrast ? "black" : Qt.rgba(0.11, 0.11, 0.12, 1)
    readonly property color textOnSolidPrimary: dark ? Qt.rgba(0.06, 0.06, 0.07, 1) : "white"
    readonly property color primaryText: dark && !highContrast ? Qt.rgba(1, 1, 1, 0.92) : solidPrimary
    readonly property color secondaryText: highContrast ? ink(0.85) : dark ? Qt.rgba(1, 1, 1, 0.6) : Qt.rgba(0, 0, 0, 0.6)
    readonly property color tertiaryText: highContrast ? ink(0.6) : dark ? Qt.rgba(1, 1, 1, 0.3) : Qt.rgba(0, 0, 0, 0.3)
    readonly property color focusRing: highContrast ? ink(1) : dark ? Qt.rgba(1, 1, 1, 0.55) : Qt.rgba(0, 0, 0, 0.45)

    // Sizes of text, in pixels of the window, that are known by name
    readonly property int callout: 13
    readonly property int caption: 11

    /// The primary ink at an opacity from 0 to 1.
    function ink(opacity: real): color {
        return Qt.rgba(solidPrimary.r, solidPrimary.g, solidPrimary.b, opacity);
    }
}
