#include "Selvane/Platform/Linux/TooltipPlace.h"

#include <algorithm>

namespace selvane {

namespace {

/// Between the tooltip and the item.
constexpr int gap = 4;

} // namespace

ScreenPoint tooltipCorner(const ScreenRect& item, int width, int height, const ScreenRect& monitor) {
    // In this order: of a tooltip that is too wide the beginning is shown.
    const int right = monitor.x + monitor.width - width;
    const int x = std::max(std::min(item.x + (item.width - width) / 2, right), monitor.x);
    const bool isInUpperHalf = item.y + item.height / 2 < monitor.y + monitor.height / 2;
    return {x, isInUpperHalf ? item.y + item.height + gap : item.y - gap - height};
}

} // namespace selvane
