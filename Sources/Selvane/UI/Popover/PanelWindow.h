#pragma once

#include <QQuickWindow>

#include <functional>

namespace selvane {

/// A window that tells when the user turns to it with a mouse, a finger or a pen.
class PanelWindow final : public QQuickWindow {
public:
    std::function<void()> onPress;

protected:
    bool event(QEvent* event) override {
        const auto type = event->type();
        if ((type == QEvent::MouseButtonPress || type == QEvent::TouchBegin || type == QEvent::TabletPress) &&
            onPress)
            onPress();
        return QQuickWindow::event(event);
    }
};

} // namespace selvane
