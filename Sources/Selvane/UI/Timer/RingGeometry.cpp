#include "Selvane/UI/Timer/RingGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace selvane::RingGeometry {

namespace {

constexpr int tickCount = 60;
constexpr double fullTurn = 360;
/// A little more than the half of the head covers of the arc.
constexpr double behindTheEnd = 3.5;

QPointF onCircle(double radius, double degrees) {
    const double radians = (degrees - 90) * std::numbers::pi / 180;
    return {radius * std::cos(radians), radius * std::sin(radians)};
}

} // namespace

std::vector<Tick> ticks(double squareSide) {
    const double radius = squareSide / 2;
    std::vector<Tick> result;
    result.reserve(tickCount);
    for (int index = 0; index < tickCount; ++index) {
        const bool isMajor = index % 5 == 0;
        const double length = isMajor ? 4.5 : 2.5;
        const double angle = index * fullTurn / tickCount;
        result.push_back({.inner = onCircle(radius - length, angle),
                          .outer = onCircle(radius, angle),
                          .width = isMajor ? 1.2 : 1.0,
                          .opacity = isMajor ? 0.22 : 0.1});
    }
    return result;
}

double gradientEnd(double progress) {
    return std::max(fullTurn * progress, 1.0);
}

double opacityAt(double angle, double progress) {
    const double part =
        std::clamp((angle - gradientStart) / (gradientEnd(progress) - gradientStart), 0.0, 1.0);
    return std::lerp(weakest, strongest, part);
}

ConicalStops conicalStops(double progress) {
    const double end = gradientEnd(progress);
    const double seam = std::max((end + fullTurn + gradientStart) / 2, end + behindTheEnd);
    const double begin = seam - fullTurn;
    ConicalStops result{seam, {{0.0, opacityAt(begin, progress)}}};
    if (begin < gradientStart)
        result.stops.emplace_back((gradientStart - begin) / fullTurn, weakest);
    result.stops.emplace_back((end - begin) / fullTurn, strongest);
    result.stops.emplace_back(1.0, strongest);
    return result;
}

QPointF headCentre(double progress) {
    return onCircle(arcDiameter / 2, fullTurn * progress);
}

} // namespace selvane::RingGeometry
