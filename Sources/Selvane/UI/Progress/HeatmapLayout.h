#pragma once

#include "Selvane/UI/Progress/HeatmapGrid.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace selvane {

/// Where the parts of a heatmap lie: a row of month labels above the squares, a column of weekday labels to
/// their left. Lengths in pixels of the window.
struct HeatmapLayout {
    /// The number of columns.
    int weeks = 0;
    /// The side of a square.
    double cell = 12;
    /// Between squares.
    double gap = 4;
    /// What the squares and the weekday labels are to fill; 0 if nothing is offered. What is offered and not
    /// filled is left at the end; without an offer, whatever room there is too much lies before the labels.
    double offeredWidth = 0;
    /// The height of the row of month labels.
    double labelHeight = 13;
    /// Below the month labels, and beside the weekday labels.
    double labelSpacing = 5;

    friend bool operator==(const HeatmapLayout&, const HeatmapLayout&) = default;

    /// The room of the weekday labels: as much as the offered width leaves, within what becomes the labels.
    [[nodiscard]] double weekdayWidth() const;
    /// The size of labels and squares together.
    [[nodiscard]] QSizeF contentSize() const;
    /// The left end of the weekday labels in an item of this width.
    [[nodiscard]] double left(double itemWidth) const;
    /// The corner of the first square.
    [[nodiscard]] QPointF gridOrigin(double itemWidth) const;
    /// The square of the day of this offset.
    [[nodiscard]] QRectF square(int offset, double itemWidth) const;
    /// The offset of the day whose square is at this point, or nearest to it across the gap; absent beyond
    /// the squares.
    [[nodiscard]] std::optional<int> offsetAt(QPointF point, double itemWidth) const;
};

} // namespace selvane
