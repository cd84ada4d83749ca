#include "Selvane/UI/Controls/SwitchShape.h"

#include "Selvane/UI/Controls/ShapePainting.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>

namespace selvane {

namespace {

QColor mixed(const QColor& from, const QColor& to, double part) {
    const auto bounded = static_cast<float>(std::clamp(part, 0.0, 1.0));
    const auto mix = [bounded](float a, float b) { return a + (b - a) * bounded; };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

QPainterPath capsuleFrame(const QRectF& outer, double width) {
    const QRectF inner = outer.adjusted(width, width, -width, -width);
    QPainterPath path = roundedRectangle(outer, outer.height() / 2);
    path.addPath(roundedRectangle(inner, inner.height() / 2));
    path.setFillRule(Qt::OddEvenFill);
    return path;
}

} // namespace

SwitchShape::SwitchShape(QQuickItem* parent) : StillItem(parent) {
    setAntialiasing(true);
    setImplicitSize(trackWidth + 2 * spread, trackHeight + 2 * spread);
}

void SwitchShape::paint(QPainter* painter, const QSizeF& /*size*/) {
    const double pixels = window() ? window()->effectiveDevicePixelRatio() : 1;
    const QRectF track(spread, spread, trackWidth, trackHeight);
    painter->setPen(Qt::NoPen);
    painter->fillPath(roundedRectangle(track, trackHeight / 2), mixed(_trackOff, _trackOn, _position));
    painter->fillPath(capsuleFrame(track, crispWidth(0.5, pixels)), _edgeColor);

    const double diameter = trackHeight - 2 * margin;
    const double way = trackWidth - trackHeight;
    // A knob that swings stays on its track.
    const double place = std::clamp(_position * way, -margin / 2, way + margin / 2);
    const QRectF knob(track.left() + margin + place, track.top() + margin, diameter, diameter);
    painter->save();
    painter->setClipPath(roundedRectangle(track, trackHeight / 2));
    paintShadow(*painter, knob, diameter / 2,
                {.color = QColor::fromRgbF(0, 0, 0, 0.25F), .radius = 2, .offset = 1}, pixels);
    painter->restore();
    painter->setBrush(mixed(_knobOff, _knobOn, _position));
    painter->drawEllipse(knob);

    if (_ringed)
        painter->fillPath(capsuleFrame(track.adjusted(-spread, -spread, spread, spread), 2), _ringColor);
}

} // namespace selvane
