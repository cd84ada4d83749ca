#include "Selvane/UI/Controls/KeyboardStop.h"

#include <QFocusEvent>

#include <utility>

namespace selvane {

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
    if (std::exchange(_visualFocus, visualFocus) != visualFocus)
        Q_EMIT visualFocusChanged();
}

} // namespace selvane
