#include "Selvane/UI/Controls/SlideArea.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr int stepsOfAPage = 4;

} // namespace

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

double SlideArea::handle() const {
    return _handleWidth / 2 + _position * (width() - _handleWidth);
}

void SlideArea::follow(const QPointF& pointer) {
    const double way = width() - _handleWidth;
    if (way > 0)
        moveTo((pointer.x() - _grip - _handleWidth / 2) / way);
}

void SlideArea::mousePressEvent(QMouseEvent* event) {
    const double distance = event->position().x() - handle();
    const bool isOnHandle = std::abs(distance) <= _handleWidth / 2;
    _grip = isOnHandle ? distance : 0;
    if (!isOnHandle)
        follow(event->position());
}

void SlideArea::mouseMoveEvent(QMouseEvent* event) {
    follow(event->position());
}

void SlideArea::mouseReleaseEvent(QMouseEvent* event) {
    follow(event->position());
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
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return decrease();
    case Qt::Key_Right:
    case Qt::Key_Up:
        return increase();
    case Qt::Key_PageDown:
        return moveTo(_position - stepsOfAPage * _stepSize);
    case Qt::Key_PageUp:
        return moveTo(_position + stepsOfAPage * _stepSize);
    case Qt::Key_Home:
        return moveTo(minimumValue());
    case Qt::Key_End:
        return moveTo(maximumValue());
    default:
        KeyboardStop::keyPressEvent(event);
    }
}

} // namespace selvane
