#pragma once

#include <QColor>

namespace selvane {

/// The color with its own opacity times another.
[[nodiscard]] QColor faded(const QColor& color, double opacity);

/// One color for two that lie on each other.
[[nodiscard]] QColor over(const QColor& upper, const QColor& lower);

/// An opacity on a scale that begins at the lift instead of at 0.
[[nodiscard]] double lifted(double opacity, double lift);

/// The color on the way from one to another, at 0 the first, at 1 the second and beyond that no further.
[[nodiscard]] QColor blended(const QColor& from, const QColor& to, double part);

} // namespace selvane
