#include "Selvane/UI/Controls/ShapePainting.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
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

/// Of a shadow that ends softly.
double sigma(const SoftShadow& shadow) {
    return shadow.radius / 2;
}

/// The shadow of a shape of whole pixels, with `reach` pixels around it.
QImage shadowImage(int width, int height, double radius, int reach, double sigma, const QColor& color) {
    QImage image(width + 2 * reach, height + 2 * reach, QImage::Format_ARGB32_Premultiplied);
    const double spread = sigma * std::numbers::sqrt2;
    // All four quarters are alike.
    for (int row = 0; row < (image.height() + 1) / 2; ++row) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < (image.width() + 1) / 2; ++column) {
            const double beyond =
                distance(column + 0.5 - image.width() / 2.0, row + 0.5 - image.height() / 2.0, width / 2.0,
                         height / 2.0, radius);
            const double strength = std::erfc(beyond / spread) / 2;
            line[column] = qPremultiply(qRgba(color.red(), color.green(), color.blue(),
                                              static_cast<int>(std::lround(strength * color.alpha()))));
            line[image.width() - 1 - column] = line[column];
        }
        std::copy_n(line, image.width(), reinterpret_cast<QRgb*>(image.scanLine(image.height() - 1 - row)));
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

bool isSeen(const SoftShadow& shadow) {
    return shadow.color.alpha() > 0 && shadow.radius > 0;
}

double reach(const SoftShadow& shadow) {
    return isSeen(shadow) ? sigma(shadow) * 3 : 0;
}

void paintShadow(QPainter& painter, const QRectF& shape, double cornerRadius, const SoftShadow& shadow,
                 double pixels) {
    if (!isSeen(shadow) || shape.isEmpty())
        return;
    const double radius = std::min({cornerRadius, shape.width() / 2, shape.height() / 2}) * pixels;
    const int around = static_cast<int>(std::ceil(reach(shadow) * pixels));
    QImage image = shadowImage(static_cast<int>(std::lround(shape.width() * pixels)),
                               static_cast<int>(std::lround(shape.height() * pixels)), radius, around,
                               sigma(shadow) * pixels, shadow.color);
    image.setDevicePixelRatio(pixels);
    painter.drawImage(shape.topLeft() + QPointF(0, shadow.offset) - QPointF(around, around) / pixels, image);
}

double crispWidth(double width, double pixels) {
    return std::max(1.0, std::round(width * pixels)) / pixels;
}

double crispPlace(double place, double pixels) {
    return std::round(place * pixels) / pixels;
}

QRectF crispRectangle(const QRectF& rect, double pixels) {
    const auto snap = [pixels](double place) { return crispPlace(place, pixels); };
    return {QPointF(snap(rect.left()), snap(rect.top())), QPointF(snap(rect.right()), snap(rect.bottom()))};
}

} // namespace selvane
