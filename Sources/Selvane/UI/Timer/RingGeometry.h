#pragma once

#include <QPointF>

#include <utility>
#include <vector>

/// The measures of the ring, in pixels of the window. Angles are degrees clockwise from twelve o'clock.
namespace selvane::RingGeometry {

inline constexpr double side = 184;
inline constexpr double lineWidth = 9;
inline constexpr double arcDiameter = 160;
inline constexpr double headSize = lineWidth + 3;

/// One of the strokes at the rim.
struct Tick {
    /// Its ends, from the middle of the ring.
    QPointF inner;
    QPointF outer;
    double width;
    double opacity;

    friend bool operator==(const Tick&, const Tick&) = default;
};

/// The 60 ticks of a ring that fills a square of this side, clockwise from twelve o'clock.
[[nodiscard]] std::vector<Tick> ticks(double squareSide);

/// Where the arc's gradient begins: before its start, so that the round cap has a shade too.
inline constexpr double gradientStart = -8;
inline constexpr double weakest = 0.22;
inline constexpr double strongest = 1.0;

/// Where it ends: with the arc, but never at 0, where it would have no length.
[[nodiscard]] double gradientEnd(double progress);

/// How opaque the arc is at an angle between the ends of its gradient.
[[nodiscard]] double opacityAt(double angle, double progress);

/// The gradient as the turn of a conical one, which has to begin and end at the same angle.
struct ConicalStops {
    /// Where the turn begins and ends: between the arc's end and its start, or else below its head.
    double seam;
    /// Position from 0 to 1 in the turn, and opacity there.
    std::vector<std::pair<double, double>> stops;
};

[[nodiscard]] ConicalStops conicalStops(double progress);

/// The middle of the head, from the middle of the ring.
[[nodiscard]] QPointF headCentre(double progress);

} // namespace selvane::RingGeometry
