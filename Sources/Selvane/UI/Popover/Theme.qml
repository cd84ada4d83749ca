pragma Singleton

import QtQuick

/// The palette: one ink on one ground, light or dark.
QtObject {
    property bool dark: false

    readonly property color surface: dark ? Qt.rgba(0.05, 0.05, 0.055, 1) : Qt.rgba(0.985, 0.985, 0.985, 1)
    readonly property color solidPrimary: dark ? "white" : Qt.rgba(0.11, 0.11, 0.12, 1)
    readonly property color textOnSolidPrimary: dark ? Qt.rgba(0.06, 0.06, 0.07, 1) : "white"
    readonly property color card: dark ? Qt.rgba(1, 1, 1, 0.08) : Qt.rgba(0, 0, 0, 0.045)
    readonly property color cardPressed: dark ? Qt.rgba(1, 1, 1, 0.14) : Qt.rgba(0, 0, 0, 0.09)
    readonly property color hairline: dark ? Qt.rgba(1, 1, 1, 0.07) : Qt.rgba(0, 0, 0, 0.07)
    readonly property color windowEdge: dark ? Qt.rgba(1, 1, 1, 0.16) : Qt.rgba(0, 0, 0, 0.16)

    readonly property color primaryText: dark ? Qt.rgba(1, 1, 1, 0.92) : Qt.rgba(0.11, 0.11, 0.12, 1)
    readonly property color secondaryText: dark ? Qt.rgba(1, 1, 1, 0.6) : Qt.rgba(0, 0, 0, 0.6)
    readonly property color tertiaryText: dark ? Qt.rgba(1, 1, 1, 0.3) : Qt.rgba(0, 0, 0, 0.3)
    readonly property color focusRing: dark ? Qt.rgba(1, 1, 1, 0.55) : Qt.rgba(0, 0, 0, 0.45)
}
