#include "Selvane/UI/Tasks/ScrollTrack.h"

#include <QHoverEvent>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

/// Above and below the track.
constexpr double margin = 3;
/// Of the track.
constexpr double shortestThumb = 0.15;

} // namespace

ScrollTrack::ScrollTrack(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
}

void ScrollTrack::setPartSeen(double part) {
    if (std::exchange(_partSeen, part) == part)
        return;
    Q_EMIT partSeenChanged();
    Q_EMIT thumbChanged();
}

void ScrollTrack::setPartAbove(double part) {
    if (std::exchange(_partAbove, part) == part)
        return;
    Q_EMIT partAboveChanged();
    Q_EMIT thumbChanged();
}

double ScrollTrack::thumbHeight() const {
    return std::max(height() - 2 * margin, 0.0) * std::clamp(_partSeen, shortestThumb, 1.0);
}

double ScrollTrack::way() const {
    return std::max(height() - 2 * margin, 0.0) - thumbHeight();
}

double ScrollTrack::thumbY() const {
    const double partHidden = 1 - _partSeen;
    return margin + (partHidden > 0 ? std::clamp(_partAbove / partHidden, 0.0, 1.0) * way() : 0);
}

void ScrollTrack::setHovered(bool hovered) {
    if (std::exchange(_hovered, hovered) != hovered)
        Q_EMIT hoveredChanged();
}

void ScrollTrack::setPressed(bool pressed) {
    if (std::exchange(_pressed, pressed) != pressed)
        Q_EMIT pressedChanged();
}

void ScrollTrack::hoverEnterEvent(QHoverEvent* event) {
    setHovered(true);
    event->ignore();
}

void ScrollTrack::hoverLeaveEvent(QHoverEvent* event) {
    setHovered(false);
    event->ignore();
}

void ScrollTrack::mousePressEvent(QMouseEvent* event) {
    setPressed(true);
    _grip = event->position().y() - thumbY();
    if (_grip >= 0 && _grip <= thumbHeight())
        return;
    _grip = thumbHeight() / 2;
    drag(event->position());
}

void ScrollTrack::mouseMoveEvent(QMouseEvent* event) {
    drag(event->position());
}

void ScrollTrack::mouseReleaseEvent(QMouseEvent* /*event*/) {
    setPressed(false);
}

void ScrollTrack::mouseUngrabEvent() {
    setPressed(false);
}

void ScrollTrack::drag(const QPointF& pointer) {
    if (way() > 0)
        Q_EMIT scrolled(std::clamp((pointer.y() - _grip - margin) / way(), 0.0, 1.0) * (1 - _partSeen));
}

void ScrollTrack::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !data.boolValue) {
        setHovered(false);
        setPressed(false);
    }
}

void ScrollTrack::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.height() != before.height())
        Q_EMIT thumbChanged();
}

} // namespace selvane
