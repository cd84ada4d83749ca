#include "Selvane/UI/Timer/ArcHead.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>
#include <numbers>

namespace selvane::ArcHead {

namespace {

constexpr double glowOpacity = 0.45;
/// A shadow of radius 4: the disc, blurred by a bell of this deviation.
constexpr double deviation = 3;
constexpr int stops = 12;

} // namespace

double glow(double distance, double radius) {
    const double scale = deviation * std::numbers::sqrt2;
    return glowOpacity / 2 * (std::erf((radius - distance) / scale) + std::erf((radius + distance) / scale));
}

void paint(QPainter& painter, QPointF centre, double size, QColor ink) {
    const double radius = size / 2;
    const double reach = radius + glowReach;
    QRadialGradient gradient(centre, reach);
    for (int stop = 0; stop <= stops; ++stop) {
        const double part = static_cast<double>(stop) / stops;
        // Brought down so that it ends at nothing.
        const double strength = glow(part * reach, radius) - glow(reach, radius);
        ink.setAlphaF(static_cast<float>(strength));
        gradient.setColorAt(part, ink);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawEllipse(centre, reach, reach);
    ink.setAlphaF(1);
    painter.setBrush(ink);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace selvane::ArcHead
