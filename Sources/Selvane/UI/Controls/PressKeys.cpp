#include "Selvane/UI/Controls/PressKeys.h"

#include <QKeyEvent>

namespace selvane {

namespace {

bool isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isAlone(const QKeyEvent& event) {
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

/// Whether the event goes no further.
bool takes(const QKeyEvent& event) {
    if (isReturn(event))
        return isAlone(event);
    return event.key() == Qt::Key_Space && event.isAutoRepeat();
}

} // namespace

void PressKeys::componentComplete() {
    if (parent())
        parent()->installEventFilter(this);
}

bool PressKeys::eventFilter(QObject* control, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return QObject::eventFilter(control, event);
    const QKeyEvent& key = *static_cast<QKeyEvent*>(event);
    if (!takes(key))
        return QObject::eventFilter(control, event);
    event->accept();
    if (key.type() == QEvent::KeyPress && !key.isAutoRepeat())
        Q_EMIT pressed();
    return true;
}

} // namespace selvane
