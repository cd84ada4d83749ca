#include "Selvane/UI/Controls/PressKeys.h"

#include <QKeyEvent>

namespace selvane {

bool PressKeys::isReturnAlone(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

void PressKeys::componentComplete() {
    if (parent())
        parent()->installEventFilter(this);
}

bool PressKeys::eventFilter(QObject* control, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return QObject::eventFilter(control, event);
    const QKeyEvent& key = *static_cast<QKeyEvent*>(event);
    // Other releases and repetitions of Space would press again.
    const bool takes = isReturnAlone(key) || (key.key() == Qt::Key_Space && key.isAutoRepeat());
    if (!takes)
        return QObject::eventFilter(control, event);
    event->accept();
    if (key.type() == QEvent::KeyPress && !key.isAutoRepeat())
        Q_EMIT pressed();
    return true;
}

} // namespace selvane
