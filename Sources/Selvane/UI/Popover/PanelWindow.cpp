#include "Selvane/UI/Popover/PanelWindow.h"

#include <QEvent>

namespace selvane {

bool PanelWindow::event(QEvent* event) {
    const auto type = event->type();
    if ((type == QEvent::MouseButtonPress || type == QEvent::TouchBegin || type == QEvent::TabletPress) &&
        onPress)
        onPress();
    return QQuickWindow::event(event);
}

} // namespace selvane
