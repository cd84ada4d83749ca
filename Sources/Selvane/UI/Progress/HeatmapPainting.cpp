#include "Selvane/UI/Progress/HeatmapPainting.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace selvane::HeatmapPainting {

namespace {

constexpr int labelSize = 9;

/// A square whose sides go over into its corners without a jump in curvature. At the diagonal each corner is
/// as far away as that of a circle of `radius`, but the bend begins earlier.
QPainterPath squarePath(QPointF corner, double side, double radius) {
    const double end = std::min(1.4 * radius, side / 2);
    // A cubic from one side to the other passes the diagonal at (3 c + end) / 8; a circle at radius (1 - 1 /
    // √2).
    const double control = std::max(0.0, (8 * radius * (1 - std::numbers::sqrt2 / 2) - end) / 3);
    const double x = corner.x();
    const double y = corner.y();
    const double right = x + side;
    const double bottom = y + side;

    QPainterPath path(QPointF(x + end, y));
    path.lineTo(right - end, y);
    path.cubicTo(right - control, y, right, y + control, right, y + end);
    path.lineTo(right, bottom - end);
    path.cubicTo(right, bottom - control, right - control, bottom, right - end, bottom);
    path.lineTo(x + end, bottom);
    path.cubicTo(x + control, bottom, x, bottom - control, x, bottom - end);
    path.lineTo(x, y + end);
    path.cubicTo(x, y + control, x + control, y, x + end, y);
    path.closeSubpath();
    return path;
}

} // namespace

double opacityOfLevel(int level) {
    static constexpr std::array<double, 5> opacities{0.07, 0.25, 0.45, 0.7, 1.0};
    return opacities[static_cast<std::size_t>(std::clamp(level, 0, 4))];
}

double scaleOf(const QPainter& painter) {
    return painter.deviceTransform().m11();
}

double snapped(double length, double scale) {
    return std::round(length * scale) / scale;
}

QColor faded(const QColor& colour, double opacity) {
    QColor result = colour;
    result.setAlphaF(static_cast<float>(colour.alphaF() * opacity));
    return result;
}

void fillSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& colour) {
    painter.fillPath(squarePath(corner, side, radius), colour);
}

void outlineSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& colour) {
    constexpr double width = 1;
    const QPointF inset(width / 2, width / 2);
    painter.strokePath(squarePath(corner + inset, side - width, radius - width / 2), QPen(colour, width));
}

QFont labelFont() {
    QFont font = QGuiApplication::font();
    font.setPixelSize(labelSize);
    return font;
}

double baseline(double top, double height, double scale) {
    return snapped(top + (height + QFontMetricsF(labelFont()).capHeight()) / 2, scale);
}

} // namespace selvane::HeatmapPainting
