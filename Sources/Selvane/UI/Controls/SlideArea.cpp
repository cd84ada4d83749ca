#include "Selvane/UI/Controls/SlideArea.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

SlideArea::SlideArea(QQuickItem* parent) : KeyboardStop(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setKeepMouseGrab(true);
}

void SlideArea::setPosition(double position) {
    if (std::isnan(position))
        return;
    const double nearest = std::clamp(position, 0.0, 1.0);
    if (std::exchange(_position, nearest) == nearest)
        return;
    Q_EMIT positionChanged();
    Q_EMIT valueChanged();
}

void SlideArea::setStepSize(double step) {
    if (std::exchange(_stepSize, step) != step)
        Q_EMIT stepSizeChanged();
}

void SlideArea::setHandleWidth(double width) {
    if (std::exchange(_handleWidth, width) != width)
        Q_EMIT handleWidthChanged();
}

void SlideArea::moveTo(double position) {
    const double before = _position;
    setPosition(position);
    if (_position != before)
        Q_EMIT moved();
}

void SlideArea::moveTo(const QPointF& pointer) {
    const double way = width() - _handleWidth;
    if (way <= 0)
        return;
    const double steps = std::round((pointer.x() - _handleWidth / 2) / way / _stepSize);
    moveTo(steps * _stepSize);
}

void SlideArea::mousePressEvent(QMouseEvent* event) {
    moveTo(event->position());
}

void SlideArea::mouseMoveEvent(QMouseEvent* event) {
    moveTo(event->position());
}

void SlideArea::mouseReleaseEvent(QMouseEvent* event) {
    moveTo(event->position());
}

void SlideArea::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    // It only follows the second press, and isn't for what lies below.
}

void SlideArea::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    const int turn = angle.y() == 0 ? angle.x() : event->inverted() ? -angle.y() : angle.y();
    constexpr double notch = QWheelEvent::DefaultDeltasPerStep;
    const double before = _position;
    moveTo(_position + _stepSize * turn / notch);
    event->setAccepted(_position != before);
}

void SlideArea::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Left)
        decrease();
    else if (event->key() == Qt::Key_Right)
        increase();
    else
        KeyboardStop::keyPressEvent(event);
}

} // namespace selvane
