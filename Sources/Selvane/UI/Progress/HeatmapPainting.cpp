#include "Selvane/UI/Progress/HeatmapPainting.h"

#include "Selvane/UI/Controls/ShapePainting.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cstddef>

namespace selvane::HeatmapPainting {

namespace {

constexpr int labelSize = 9;

QPainterPath squarePath(QPointF corner, double side, double radius) {
    return roundedRectangle({corner, QSizeF(side, side)}, radius, Corners::continuous);
}

} // namespace

double opacityOfLevel(int level) {
    static constexpr std::array<double, 5> opacities{0.07, 0.25, 0.45, 0.7, 1.0};
    return opacities[static_cast<std::size_t>(std::clamp(level, 0, 4))];
}

double scaleOf(const QPainter& painter) {
    return painter.deviceTransform().m11();
}

void fillSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& color) {
    painter.fillPath(squarePath(corner, side, radius), color);
}

void outlineSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& color) {
    constexpr double width = 1;
    const QPointF inset(width / 2, width / 2);
    painter.strokePath(squarePath(corner + inset, side - width, radius - width / 2), QPen(color, width));
}

QFont labelFont() {
    QFont font = QGuiApplication::font();
    font.setPixelSize(labelSize);
    return font;
}

double baseline(double top, double height, double scale) {
    return crispPlace(top + (height + QFontMetricsF(labelFont()).capHeight()) / 2, scale);
}

} // namespace selvane::HeatmapPainting
