#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <cmath>

namespace selvane {

/// A screen in the desktop's own pixels, and how many of them make one of the units that windows are placed
/// in. Its top left corner is the same in both.
struct Monitor {
    ScreenRect pixels;
    double pixelRatio;

    /// `area` is that of the screen in units of windows.
    [[nodiscard]] static Monitor ofUnits(const ScreenRect& area, double pixelRatio) {
        const auto inPixels = [&](int side) { return static_cast<int>(std::lround(side * pixelRatio)); };
        return {{area.x, area.y, inPixels(area.width), inPixels(area.height)}, pixelRatio};
    }

    /// Of a screen as Qt tells of it: QScreen.
    template <typename Screen>
    [[nodiscard]] static Monitor of(const Screen& screen) {
        const auto area = screen.geometry();
        return ofUnits({area.x(), area.y(), area.width(), area.height()}, screen.devicePixelRatio());
    }

    [[nodiscard]] constexpr bool contains(ScreenPoint point) const {
        return point.x >= pixels.x && point.x < pixels.x + pixels.width && point.y >= pixels.y &&
               point.y < pixels.y + pixels.height;
    }
    /// Whether the middle of an area lies on it.
    [[nodiscard]] constexpr bool holds(const ScreenRect& area) const {
        return contains({area.x + area.width / 2, area.y + area.height / 2});
    }

    friend bool operator==(const Monitor&, const Monitor&) = default;
};

} // namespace selvane
