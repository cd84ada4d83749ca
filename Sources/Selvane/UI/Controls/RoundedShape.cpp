#include "Selvane/UI/Controls/RoundedShape.h"

#include "Selvane/UI/Controls/Ink.h"

#include <QDataStream>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

constexpr double ringWidth = 2;
/// Of the ground, between the shape and its ring.
constexpr double ringGap = 2;

bool isEven(const QBrush& brush) {
    return brush.style() == Qt::SolidPattern;
}

bool isSeen(const QBrush& brush) {
    return !isEven(brush) || brush.color().alpha() > 0;
}

QRectF within(const QRectF& outer, double width) {
    return outer.adjusted(width, width, -width, -width);
}

/// What lies within a shape but not within the same shape drawn smaller by a width.
QPainterPath frame(const QRectF& outer, double radius, double width) {
    QPainterPath path = roundedRectangle(outer, radius, Corners::continuous);
    path.addPath(roundedRectangle(within(outer, width), std::max(radius - width, 0.0), Corners::continuous));
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

QRectF RoundedShape::shapeRectangle(const QSizeF& size) const {
    return crispRectangle({_spread, _spread, size.width() - 2 * _spread, size.height() - 2 * _spread},
                          pixels());
}

double RoundedShape::cornerRadius(const QRectF& shape) const {
    const double half = std::min(shape.width(), shape.height()) / 2;
    return _radius < 0 ? half : std::min(_radius, half);
}

QBrush RoundedShape::fill(const QRectF& /*shape*/) const {
    return _color;
}

QBrush RoundedShape::edge(const QRectF& /*shape*/) const {
    return _edgeColor;
}

void RoundedShape::describe(QDataStream& look) const {
    const QRectF shape = shapeRectangle(size());
    look << "RoundedShape" << _spread << _radius << fill(shape) << edge(shape) << _edgeWidth << _shadow.color
         << _shadow.radius << _shadow.offset << _ringed << _ringColor;
}

bool RoundedShape::isClear() const {
    const QRectF shape = shapeRectangle(size());
    return shape.isEmpty() || (!_ringed && !isSeen(_shadow) && !isSeen(fill(shape)) && !isSeen(edge(shape)));
}

QSizeF RoundedShape::leastSize() const {
    const QRectF shape = shapeRectangle(size());
    const double radius = cornerRadius(shape);
    // Of a continuous corner, also that of the ring around it; and as far into the shape as its shadow
    // changes.
    const double corner = std::max((radius + ringOut()) * 1.3, radius + reach(_shadow));
    // One pixel to repeat, and one at each side of it for places that aren't whole.
    const double least = 2 * (_spread + corner) + 3 / pixels();
    if (isEven(fill(shape)) && isEven(edge(shape)))
        return {least, least + 2 * std::abs(_shadow.offset)};
    return {least, StillItem::leastSize().height()};
}

void RoundedShape::paint(QPainter* painter, const QSizeF& size) {
    const QRectF shape = shapeRectangle(size);
    const double radius = cornerRadius(shape);
    paintShadow(*painter, shape, radius, _shadow, pixels());
    painter->setPen(Qt::NoPen);
    const QBrush inside = fill(shape);
    const QBrush outline = edge(shape);
    const double width = crispWidth(_edgeWidth, pixels());
    if (isEven(inside) && isEven(outline) && !isSeen(_shadow)) {
        painter->setCompositionMode(paintsOnEmptyGround);
        painter->fillPath(roundedRectangle(shape, radius, Corners::continuous),
                          over(outline.color(), inside.color()));
        if (isSeen(outline))
            painter->fillPath(
                roundedRectangle(within(shape, width), std::max(radius - width, 0.0), Corners::continuous),
                inside);
        painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    } else {
        painter->fillPath(roundedRectangle(shape, radius, Corners::continuous), inside);
        painter->fillPath(frame(shape, radius, width), outline);
    }
    if (_ringed)
        paintRing(*painter, shape, radius);
}

double RoundedShape::ringOut() const {
    // Without room around the shape the ring lies on its edge.
    return std::min(_spread, ringGap + ringWidth);
}

void RoundedShape::paintRing(QPainter& painter, const QRectF& shape, double radius) const {
    const double out = ringOut();
    painter.fillPath(frame(shape.adjusted(-out, -out, out, out), radius + out, ringWidth), _ringColor);
}

} // namespace selvane
