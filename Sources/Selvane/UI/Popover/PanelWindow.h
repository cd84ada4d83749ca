#pragma once

#include <QQuickWindow>

#include <functional>

namespace selvane {

/// A window that tells when the user turns to it with a mouse, a finger or a pen.
class PanelWindow final : public QQuickWindow {
public:
    std::function<void()> onPress;

protected:
    bool event(QEvent* event) override;
};

} // namespace selvane
