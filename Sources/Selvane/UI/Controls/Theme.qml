pragma Singleton

import QtQuick
import Selvane.Controls

/// The palette: one ink on one ground, light or dark, and the sizes of text that have names.
ThemeValues {
    id: root

    /// Sizes of text in pixels of the window.
    readonly property int callout: 13
    readonly property int caption: 11

    /// The primary ink at an opacity from 0 to 1.
    function ink(opacity: real): color {
        return Qt.rgba(root.primary.r, root.primary.g, root.primary.b, opacity);
    }
}
