#include "Selvane/UI/PanelPlacement.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace selvane::PanelPlacement {

namespace {

std::optional<ScreenRect> itemArea(const StatusItemAnchor& anchor) {
    if (anchor.icon)
        return anchor.icon;
    if (anchor.pointer)
        return ScreenRect{anchor.pointer->x, anchor.pointer->y, 0, 0};
    return std::nullopt;
}

int clampedX(double x, int width, const ScreenRect& available) {
    const int left = available.x + edgeMargin;
    const int right = available.x + available.width - width - edgeMargin;
    // In this order: on a screen that is too narrow the right bound wins.
    return std::min(std::max(static_cast<int>(std::lround(x)), left), right);
}

int scaled(int distance, double ratio) {
    return static_cast<int>(std::lround(distance / ratio));
}

ScreenPoint scaled(ScreenPoint point, const Monitor& monitor) {
    const auto [x, y, width, height] = monitor.pixels;
    return {x + scaled(point.x - x, monitor.pixelRatio), y + scaled(point.y - y, monitor.pixelRatio)};
}

} // namespace

ScreenPoint origin(const StatusItemAnchor& anchor, int width, int height, const ScreenRect& available) {
    const auto item = itemArea(anchor);
    const int top = available.y + itemGap;
    if (!item)
        return {clampedX(available.x + available.width, width, available), top};

    const int x = clampedX(item->x + item->width / 2.0 - width / 2.0, width, available);
    const bool isInUpperHalf = item->y + item->height / 2 < available.y + available.height / 2;
    const int bottom = available.y + available.height - height - itemGap;
    if (isInUpperHalf)
        return {x, std::max(item->y + item->height + itemGap, top)};
    return {x, std::max(std::min(item->y - height - itemGap, bottom), top)};
}

StatusItemAnchor endOfBar(const ScreenRect& whole, const ScreenRect& available) {
    const bool isAtTop = available.y > whole.y;
    const bool isAtBottom = available.y + available.height < whole.y + whole.height;
    const bool isAtLeft = available.x > whole.x;
    const bool isAtRight = available.x + available.width < whole.x + whole.width;
    if (isAtTop || (!isAtBottom && !isAtLeft && !isAtRight))
        return {};
    // Bars at the sides have their status area at their lower end.
    const int right = whole.x + whole.width;
    const int bottom = whole.y + whole.height;
    const bool isOnlyAtLeft = isAtLeft && !isAtBottom && !isAtRight;
    return {std::nullopt, ScreenPoint{isOnlyAtLeft ? whole.x : right, bottom}};
}

bool isOn(const Monitor& monitor, const StatusItemAnchor& anchor) {
    const auto item = itemArea(anchor);
    return item && monitor.holds(*item);
}

StatusItemAnchor scaled(const StatusItemAnchor& anchor, const Monitor& monitor) {
    StatusItemAnchor result;
    if (anchor.pointer)
        result.pointer = scaled(*anchor.pointer, monitor);
    if (anchor.icon)
        result.icon = scaled(*anchor.icon, monitor);
    return result;
}

ScreenRect scaled(const ScreenRect& area, const Monitor& monitor) {
    const auto [x, y] = scaled(ScreenPoint{area.x, area.y}, monitor);
    return {x, y, scaled(area.width, monitor.pixelRatio), scaled(area.height, monitor.pixelRatio)};
}

} // namespace selvane::PanelPlacement
