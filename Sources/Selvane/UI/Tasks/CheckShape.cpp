#include "Selvane/UI/Tasks/CheckShape.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Controls/ShapePainting.h"

#include <QDataStream>
#include <QLineF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr double ringWidth = 1.5;
constexpr double ringOpacityWhenOff = 0.7;
constexpr double discScaleWhenOff = 0.3;
constexpr double markScaleWhenOff = 0.4;

/// From what it is when off to 1, however far the spring goes.
double on(double whenOff, double progress) {
    return std::lerp(whenOff, 1.0, std::clamp(progress, 0.0, 1.0));
}

} // namespace

CheckShape::CheckShape(QQuickItem* parent) : StillItem(parent) {
    setAntialiasing(true);
}

void CheckShape::setProgress(double progress) {
    if (std::exchange(_progress, progress) == progress)
        return;
    update();
    Q_EMIT progressChanged();
}

double CheckShape::markOpacity() const {
    return on(0, _progress);
}

double CheckShape::markScale() const {
    return on(markScaleWhenOff, _progress);
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

void CheckShape::describe(QDataStream& look) const {
    look << "CheckShape" << _progress << _ringColor << _fillColor;
}

void CheckShape::paint(QPainter* painter, const QSizeF& size) {
    const QPointF center = QRectF({}, size).center();
    const double radius = std::min(size.width(), size.height()) / 2;

    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(faded(_ringColor, on(ringOpacityWhenOff, _progress)), ringWidth));
    // Inside the edge.
    painter->setCompositionMode(paintsOnEmptyGround);
    painter->drawEllipse(center, radius - ringWidth / 2, radius - ringWidth / 2);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);

    if (_progress <= 0)
        return;
    painter->setPen(Qt::NoPen);
    painter->setBrush(faded(_fillColor, on(0, _progress)));
    const double scale = on(discScaleWhenOff, _progress);
    painter->drawEllipse(center, radius * scale, radius * scale);
}

} // namespace selvane
