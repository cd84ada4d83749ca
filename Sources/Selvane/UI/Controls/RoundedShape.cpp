#include "Selvane/UI/Controls/RoundedShape.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>

namespace selvane {

namespace {

constexpr double ringWidth = 2;
/// Of the ground, between the shape and its ring.
constexpr double ringGap = 2;

/// What lies within a shape but not within the same shape drawn smaller by a width.
QPainterPath frame(const QRectF& outer, double radius, double width) {
    QPainterPath path = roundedRectangle(outer, radius, Corners::continuous);
    path.addPath(roundedRectangle(outer.adjusted(width, width, -width, -width), std::max(radius - width, 0.0),
                                  Corners::continuous));
    path.setFillRule(Qt::OddEvenFill);
    return path;
}

} // namespace

RoundedShape::RoundedShape(QQuickItem* parent) : StillItem(parent) {
    setAntialiasing(true);
}

double RoundedShape::pixels() const {
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

QRectF RoundedShape::shapeRectangle() const {
    return crispRectangle({_spread, _spread, width() - 2 * _spread, height() - 2 * _spread}, pixels());
}

double RoundedShape::cornerRadius() const {
    const QRectF shape = shapeRectangle();
    const double half = std::min(shape.width(), shape.height()) / 2;
    return _radius < 0 ? half : std::min(_radius, half);
}

QBrush RoundedShape::fill(const QRectF& /*shape*/) const {
    return _color;
}

QBrush RoundedShape::edge(const QRectF& /*shape*/) const {
    return _edgeColor;
}

void RoundedShape::paint(QPainter* painter) {
    const QRectF shape = shapeRectangle();
    if (shape.isEmpty())
        return;
    const double radius = cornerRadius();
    paintShadow(*painter, shape, radius, _shadow, pixels());
    painter->setPen(Qt::NoPen);
    painter->fillPath(roundedRectangle(shape, radius, Corners::continuous), fill(shape));
    painter->fillPath(frame(shape, radius, crispWidth(_edgeWidth, pixels())), edge(shape));
    if (_ringed)
        paintRing(*painter, shape);
}

void RoundedShape::paintRing(QPainter& painter, const QRectF& shape) const {
    // Without room around the shape the ring lies on its edge.
    const double out = std::min(_spread, ringGap + ringWidth);
    painter.fillPath(frame(shape.adjusted(-out, -out, out, out), cornerRadius() + out, ringWidth),
                     _ringColor);
}

} // namespace selvane
