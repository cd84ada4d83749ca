import QtQuick
import Selvane.Controls
import Selvane.Progress

/// The key to a heatmap. A screen reader says the minutes instead.
HeatmapLegendCanvas {
    id: root

    ink: Theme.solidPrimary
    lift: Theme.trackLift
    labelInk: Theme.secondaryText
    Accessible.ignored: true
}
