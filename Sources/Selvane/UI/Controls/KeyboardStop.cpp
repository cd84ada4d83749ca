#include "Selvane/UI/Controls/KeyboardStop.h"

#include "Selvane/UI/Controls/RoundedShape.h"

#include <QFocusEvent>

#include <utility>

namespace selvane {

namespace {

/// From the item to the outer side of its ring.
constexpr double ringRoom = 4;
constexpr double ringRadius = 2;

} // namespace

KeyboardStop::KeyboardStop(QQuickItem* parent) : QQuickItem(parent) {
    setActiveFocusOnTab(true);
}

void KeyboardStop::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    setVisualFocus(event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason);
}

void KeyboardStop::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    setVisualFocus(false);
}

void KeyboardStop::setVisualFocus(bool visualFocus) {
    if (std::exchange(_visualFocus, visualFocus) == visualFocus)
        return;
    updateRing();
    Q_EMIT visualFocusChanged();
}

void KeyboardStop::setRingColor(const QColor& color) {
    if (std::exchange(_ringColor, color) == color)
        return;
    updateRing();
    Q_EMIT ringChanged();
}

void KeyboardStop::setRingTop(double top) {
    if (std::exchange(_ringTop, top) == top)
        return;
    updateRing();
    Q_EMIT ringChanged();
}

void KeyboardStop::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (_ring)
        updateRing();
}

void KeyboardStop::updateRing() {
    if (!_visualFocus || _ringColor.alpha() == 0) {
        delete std::exchange(_ring, nullptr);
        return;
    }
    if (!_ring) {
        _ring = new RoundedShape(this);
        _ring->setSpread(ringRoom);
        _ring->setRadius(ringRadius);
        _ring->setRinged(true);
    }
    _ring->setRingColor(_ringColor);
    _ring->setPosition({-ringRoom, _ringTop - ringRoom});
    _ring->setSize({width() + 2 * ringRoom, height() - _ringTop + 2 * ringRoom});
}

} // namespace selvane
