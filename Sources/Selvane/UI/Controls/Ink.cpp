#include "Selvane/UI/Controls/Ink.h"

#include <algorithm>
#include <cmath>

namespace selvane {

QColor faded(const QColor& color, double opacity) {
    QColor result = color;
    result.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return result;
}

QColor over(const QColor& upper, const QColor& lower) {
    if (upper.alpha() == 0)
        return lower;
    const float below = lower.alphaF() * (1 - upper.alphaF());
    const float alpha = upper.alphaF() + below;
    const auto mix = [&](float up, float down) { return (up * upper.alphaF() + down * below) / alpha; };
    return QColor::fromRgbF(mix(upper.redF(), lower.redF()), mix(upper.greenF(), lower.greenF()),
                            mix(upper.blueF(), lower.blueF()), alpha);
}

double lifted(double opacity, double lift) {
    return std::lerp(lift, 1.0, opacity);
}

QColor blended(const QColor& from, const QColor& to, double part) {
    const auto at = static_cast<float>(std::clamp(part, 0.0, 1.0));
    return QColor::fromRgbF(std::lerp(from.redF(), to.redF(), at), std::lerp(from.greenF(), to.greenF(), at),
                            std::lerp(from.blueF(), to.blueF(), at),
                            std::lerp(from.alphaF(), to.alphaF(), at));
}

} // namespace selvane
