#include "Selvane/Platform/Linux/Badge.h"

#include "Selvane/Platform/InkColor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace selvane {

namespace {

/// How much of a pixel lies within the rectangle, 0 to 1: all of it but for the corners.
double coverage(double x, double y, double width, double height) {
    const double radius = std::min(width, height) / 4;
    // From the centre of the nearest corner's circle to the pixel's middle, 0 beside the corners.
    const double across = std::max({radius - (x + 0.5), (x + 0.5) - (width - radius), 0.0});
    const double down = std::max({radius - (y + 0.5), (y + 0.5) - (height - radius), 0.0});
    return std::clamp(radius - std::hypot(across, down) + 0.5, 0.0, 1.0);
}

} // namespace

Picture badge(const Picture& drawing, int width, int height, Ink ink) {
    Picture result{width, height, {}};
    result.argb.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const int left = (width - drawing.width) / 2;
    const int top = (height - drawing.height) / 2;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isCut = x >= left && x < left + drawing.width && y >= top && y < top + drawing.height;
            const std::uint32_t cut =
                isCut ? drawing.argb[static_cast<std::size_t>((y - top) * drawing.width + x - left)] >> 24U
                      : 0;
            const double share = coverage(x, y, width, height) * (255 - cut);
            result.argb.push_back(static_cast<std::uint32_t>(std::lround(share)) << 24U | inkColor(ink));
        }
    }
    return result;
}

} // namespace selvane
