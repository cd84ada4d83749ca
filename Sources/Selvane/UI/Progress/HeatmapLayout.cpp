#include "Selvane/UI/Progress/HeatmapLayout.h"

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

/// The word itself, and where it begins to look lost.
constexpr double narrowestLabels = 20;
constexpr double widestLabels = 27;

double extent(int count, double cell, double gap) {
    return count > 0 ? count * (cell + gap) - gap : 0;
}

} // namespace

double HeatmapLayout::weekdayWidth() const {
    if (offeredWidth <= 0)
        return narrowestLabels;
    const double left = offeredWidth - labelSpacing - extent(weeks, cell, gap);
    return std::clamp(left, narrowestLabels, widestLabels);
}

QSizeF HeatmapLayout::contentSize() const {
    return {weekdayWidth() + labelSpacing + extent(weeks, cell, gap),
            labelHeight + labelSpacing + extent(HeatmapGrid::rows, cell, gap)};
}

double HeatmapLayout::left(double itemWidth) const {
    return offeredWidth > 0 ? 0 : std::max(0.0, itemWidth - contentSize().width());
}

QPointF HeatmapLayout::gridOrigin(double itemWidth) const {
    return {left(itemWidth) + weekdayWidth() + labelSpacing, labelHeight + labelSpacing};
}

QRectF HeatmapLayout::square(int offset, double itemWidth) const {
    const QPointF step((cell + gap) * (offset / HeatmapGrid::rows),
                       (cell + gap) * (offset % HeatmapGrid::rows));
    return {gridOrigin(itemWidth) + step, QSizeF(cell, cell)};
}

std::optional<int> HeatmapLayout::offsetAt(QPointF point, double itemWidth) const {
    const QPointF inGrid = point - gridOrigin(itemWidth) + QPointF(gap / 2, gap / 2);
    const int column = static_cast<int>(std::floor(inGrid.x() / (cell + gap)));
    const int row = static_cast<int>(std::floor(inGrid.y() / (cell + gap)));
    if (column < 0 || column >= weeks || row < 0 || row >= HeatmapGrid::rows)
        return std::nullopt;
    return column * HeatmapGrid::rows + row;
}

} // namespace selvane
