#include "Selvane/UI/Tasks/CheckShape.h"

#include <QLineF>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

constexpr double ringWidth = 1.5;
constexpr double ringOpacityWhenOff = 0.7;
constexpr double discScaleWhenOff = 0.3;

QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

} // namespace

CheckShape::CheckShape(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void CheckShape::setProgress(double progress) {
    if (std::exchange(_progress, progress) == progress)
        return;
    update();
    Q_EMIT progressChanged();
}

void CheckShape::setRingColor(const QColor& color) {
    if (std::exchange(_ringColor, color) == color)
        return;
    update();
    Q_EMIT ringColorChanged();
}

void CheckShape::setFillColor(const QColor& color) {
    if (std::exchange(_fillColor, color) == color)
        return;
    update();
    Q_EMIT fillColorChanged();
}

bool CheckShape::contains(const QPointF& point) const {
    return QLineF(boundingRect().center(), point).length() <= std::min(width(), height()) / 2;
}

void CheckShape::paint(QPainter* painter) {
    const double part = std::clamp(_progress, 0.0, 1.0);
    const QPointF center = boundingRect().center();
    const double radius = std::min(width(), height()) / 2;

    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(faded(_ringColor, ringOpacityWhenOff + (1 - ringOpacityWhenOff) * part), ringWidth));
    // Inside the edge.
    painter->drawEllipse(center, radius - ringWidth / 2, radius - ringWidth / 2);

    painter->setPen(Qt::NoPen);
    painter->setBrush(faded(_fillColor, part));
    const double scale = discScaleWhenOff + (1 - discScaleWhenOff) * part;
    painter->drawEllipse(center, radius * scale, radius * scale);
}

} // namespace selvane
