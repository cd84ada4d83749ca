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

    /// The ink of a mark that says something without words.
    function mark(opacity: real): color {
        return ink(root.lifted(opacity, root.markLift));
    }

    /// The ink of what others fill.
    function track(opacity: real): color {
        return ink(root.lifted(opacity, root.trackLift));
    }
}
