#pragma once

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>

namespace selvane {

enum class Corners {
    /// Quarters of circles.
    round,
    /// The curvature grows from the straight sides on, so that no eye sees where the corner begins.
    continuous,
};

/// A rectangle with rounded corners. The radius is at most half the shorter side; at that it is a capsule,
/// whose ends are half circles either way.
[[nodiscard]] QPainterPath roundedRectangle(const QRectF& rect, double radius,
                                            Corners corners = Corners::round);

/// Looks like the usual mode where nothing was painted before, and where the paint is opaque. In the usual
/// mode the painter divides tall shapes among threads, and waking them takes longer than painting what a view
/// is made of.
inline constexpr auto paintsOnEmptyGround = QPainter::CompositionMode_Source;

/// A soft shadow. Lengths are in the painter's units.
struct SoftShadow {
    QColor color;
    /// How far the shadow reaches beyond the shape, about.
    double radius = 0;
    /// How far below the shape it lies.
    double offset = 0;

    bool operator==(const SoftShadow&) const = default;
};

/// False for a shadow that is clear or reaches nowhere.
[[nodiscard]] bool isSeen(const SoftShadow& shadow);

/// How far from the shape's sides, outward and inward, a shadow changes.
[[nodiscard]] double reach(const SoftShadow& shadow);

/// Paints the shadow of a rounded rectangle, also where the shape will cover it. `pixels` is the number of
/// device pixels to a unit of the painter.
void paintShadow(QPainter& painter, const QRectF& shape, double cornerRadius, const SoftShadow& shadow,
                 double pixels);

/// A width as whole device pixels, at least one, in the painter's units.
[[nodiscard]] double crispWidth(double width, double pixels);

/// The nearest place on a border between device pixels.
[[nodiscard]] double crispPlace(double place, double pixels);

/// The rectangle with its sides on borders between device pixels.
[[nodiscard]] QRectF crispRectangle(const QRectF& rect, double pixels);

} // namespace selvane
