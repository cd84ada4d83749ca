#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace selvane::test {

/// An opaque colour as the eye gets it: `upper`, perhaps translucent, on an opaque `lower`.
[[nodiscard]] inline QColor on(const QColor& lower, const QColor& upper) {
    const float a = upper.alphaF();
    const auto mix = [a](float up, float down) { return up * a + down * (1 - a); };
    return QColor::fromRgbF(mix(upper.redF(), lower.redF()), mix(upper.greenF(), lower.greenF()),
                            mix(upper.blueF(), lower.blueF()));
}

/// Relative luminance of an opaque colour as the Web Content Accessibility Guidelines define it.
[[nodiscard]] inline double luminance(const QColor& color) {
    const auto linear = [](float channel) {
        return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Contrast ratio, from 1 to 21, of ink on an opaque ground.
[[nodiscard]] inline double contrast(const QColor& ink, const QColor& ground) {
    const double a = luminance(on(ground, ink)) + 0.05;
    const double b = luminance(ground) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

} // namespace selvane::test
