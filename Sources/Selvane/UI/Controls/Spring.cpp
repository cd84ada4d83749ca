#include "Selvane/UI/Controls/Spring.h"

#include <QPointF>

#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace selvane {

namespace {

constexpr double tolerance = 0.002;
/// Cubic pieces of a curve. Their ends lie on the motion, and so do their slopes. Qt 6.4 has room for ten and
/// writes past the end of it for more.
constexpr int pieces = 10;

double angularFrequency(double response) {
    return 2 * std::numbers::pi / response;
}

QEasingCurve makeCurve(double response, double dampingFraction) {
    const double end = Spring::settlingTime(response, dampingFraction);
    QEasingCurve curve(QEasingCurve::BezierSpline);
    const double third = 1.0 / (3 * pieces);
    for (int piece = 0; piece < pieces; ++piece) {
        const double from = static_cast<double>(piece) / pieces;
        const double to = static_cast<double>(piece + 1) / pieces;
        const auto position = [&](double part) {
            return part < 1 ? Spring::position(response, dampingFraction, part * end) : 1.0;
        };
        const auto slope = [&](double part) {
            return Spring::velocity(response, dampingFraction, part * end) * end;
        };
        curve.addCubicBezierSegment({from + third, position(from) + slope(from) * third},
                                    {to - third, position(to) - slope(to) * third}, {to, position(to)});
    }
    return curve;
}

} // namespace

double Spring::position(double response, double dampingFraction, double seconds) {
    const double frequency = angularFrequency(response);
    const double decay = std::exp(-dampingFraction * frequency * seconds);
    if (dampingFraction >= 1)
        return 1 - decay * (1 + frequency * seconds);
    const double damped = frequency * std::sqrt(1 - dampingFraction * dampingFraction);
    return 1 - decay * (std::cos(damped * seconds) +
                        dampingFraction * frequency / damped * std::sin(damped * seconds));
}

double Spring::velocity(double response, double dampingFraction, double seconds) {
    const double frequency = angularFrequency(response);
    const double decay = std::exp(-dampingFraction * frequency * seconds);
    if (dampingFraction >= 1)
        return decay * frequency * frequency * seconds;
    const double damped = frequency * std::sqrt(1 - dampingFraction * dampingFraction);
    return decay * frequency * frequency / damped * std::sin(damped * seconds);
}

double Spring::settlingTime(double response, double dampingFraction) {
    const double frequency = angularFrequency(response);
    // How far the motion can still be from its target only falls.
    const auto reach = [&](double seconds) {
        const double decay = std::exp(-dampingFraction * frequency * seconds);
        if (dampingFraction >= 1)
            return decay * (1 + frequency * seconds);
        return decay / std::sqrt(1 - dampingFraction * dampingFraction);
    };
    double low = 0;
    double high = response;
    while (reach(high) > tolerance)
        high *= 2;
    for (int step = 0; step < 40; ++step) {
        const double middle = (low + high) / 2;
        (reach(middle) > tolerance ? low : high) = middle;
    }
    return high;
}

void Spring::setResponse(double response) {
    if (std::exchange(_response, response) != response)
        Q_EMIT changed();
}

void Spring::setDampingFraction(double fraction) {
    if (std::exchange(_dampingFraction, fraction) != fraction)
        Q_EMIT changed();
}

int Spring::duration() const {
    return static_cast<int>(std::lround(settlingTime(_response, _dampingFraction) * 1000));
}

QEasingCurve Spring::curve() const {
    // A handful of springs move everything, and views are made in great numbers.
    static std::map<std::pair<double, double>, QEasingCurve> curves;
    const auto [place, isNew] = curves.try_emplace({_response, _dampingFraction});
    if (isNew)
        place->second = makeCurve(_response, _dampingFraction);
    return place->second;
}

} // namespace selvane
