#include "Selvane/UI/Controls/ShapePainting.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace selvane {

namespace {

/// From a point to a rectangle with round corners around the origin; negative inside.
double distance(double x, double y, double halfWidth, double halfHeight, double radius) {
    const double across = std::abs(x) - halfWidth + radius;
    const double down = std::abs(y) - halfHeight + radius;
    return std::hypot(std::max(across, 0.0), std::max(down, 0.0)) + std::min(std::max(across, down), 0.0) -
           radius;
}

/// The shadow of a shape of whole pixels, with `reach` pixels around it.
QImage shadowImage(int width, int height, double radius, int reach, double sigma, const QColor& color) {
    QImage image(width + 2 * reach, height + 2 * reach, QImage::Format_ARGB32_Premultiplied);
    const double spread = sigma * std::numbers::sqrt2;
    for (int row = 0; row < image.height(); ++row) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < image.width(); ++column) {
            const double beyond =
                distance(column + 0.5 - image.width() / 2.0, row + 0.5 - image.height() / 2.0, width / 2.0,
                         height / 2.0, radius);
            const double strength = std::erfc(beyond / spread) / 2;
            line[column] = qPremultiply(qRgba(color.red(), color.green(), color.blue(),
                                              static_cast<int>(std::lround(strength * color.alpha()))));
        }
    }
    return image;
}

} // namespace

QPainterPath roundedRectangle(const QRectF& rect, double radius, Corners corners) {
    QPainterPath path;
    const double half = std::min(rect.width(), rect.height()) / 2;
    const double bounded = std::clamp(radius, 0.0, half);
    if (corners == Corners::round || bounded >= half) {
        path.addRoundedRect(rect, bounded, bounded);
        return path;
    }
    // One cubic a corner. It begins a little before the circle would and passes through the circle's middle.
    const double start = std::min(bounded * 1.3, half);
    const double middle = bounded * (1 - std::numbers::sqrt2 / 2);
    const double control = (8 * middle - start) / 3;
    const auto left = rect.left();
    const auto right = rect.right();
    const auto top = rect.top();
    const auto bottom = rect.bottom();
    path.moveTo(left + start, top);
    path.lineTo(right - start, top);
    path.cubicTo(right - control, top, right, top + control, right, top + start);
    path.lineTo(right, bottom - start);
    path.cubicTo(right, bottom - control, right - control, bottom, right - start, bottom);
    path.lineTo(left + start, bottom);
    path.cubicTo(left + control, bottom, left, bottom - control, left, bottom - start);
    path.lineTo(left, top + start);
    path.cubicTo(left, top + control, left + control, top, left + start, top);
    path.closeSubpath();
    return path;
}

void paintShadow(QPainter& painter, const QRectF& shape, double cornerRadius, const SoftShadow& shadow,
                 double pixels) {
    if (shadow.color.alpha() == 0 || shadow.radius <= 0 || shape.isEmpty())
        return;
    const double radius = std::min({cornerRadius, shape.width() / 2, shape.height() / 2}) * pixels;
    const double sigma = shadow.radius * pixels / 2;
    const int reach = static_cast<int>(std::ceil(sigma * 3));
    const int width = static_cast<int>(std::lround(shape.width() * pixels));
    const int height = static_cast<int>(std::lround(shape.height() * pixels));
    // Between the corners a shadow is the same all along: that much is drawn stretched.
    const int corner = static_cast<int>(std::ceil(radius)) + reach;
    const int tileWidth = std::min(width, 2 * corner + 1);
    const int tileHeight = std::min(height, 2 * corner + 1);
    const QImage tile = shadowImage(tileWidth, tileHeight, radius, reach, sigma, shadow.color);

    const auto edges = [&](int length, int tileLength, double origin, std::array<double, 4>& from,
                           std::array<double, 4>& to) {
        const int side = (tileLength - 1) / 2 + reach;
        const int all = tileLength + 2 * reach;
        from = {0, static_cast<double>(side), static_cast<double>(all - side), static_cast<double>(all)};
        to = from;
        to[2] += length - tileLength;
        to[3] += length - tileLength;
        for (double& place : to)
            place = origin + (place - reach) / pixels;
    };
    std::array<double, 4> fromX{};
    std::array<double, 4> toX{};
    std::array<double, 4> fromY{};
    std::array<double, 4> toY{};
    edges(width, tileWidth, shape.left(), fromX, toX);
    edges(height, tileHeight, shape.top() + shadow.offset, fromY, toY);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            painter.drawImage(
                QRectF(QPointF(toX[column], toY[row]), QPointF(toX[column + 1], toY[row + 1])), tile,
                QRectF(QPointF(fromX[column], fromY[row]), QPointF(fromX[column + 1], fromY[row + 1])));
        }
    }
}

double crispWidth(double width, double pixels) {
    return std::max(1.0, std::round(width * pixels)) / pixels;
}

QRectF crispRectangle(const QRectF& rect, double pixels) {
    const auto snap = [pixels](double place) { return std::round(place * pixels) / pixels; };
    return {QPointF(snap(rect.left()), snap(rect.top())), QPointF(snap(rect.right()), snap(rect.bottom()))};
}

} // namespace selvane
