#pragma once

#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QImage>
#include <QObject>
#include <QQuickWindow>

#include <memory>
#include <optional>
#include <string>

namespace selvane {
class PopoverPanel;
}

namespace selvane::test {

/// Holds back the tips that come where the keyboard or the pointer rests: a picture may take as long as that.
class WithoutTips : public QObject {
public:
    WithoutTips();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

/// The popover on a model of its own, at a fixed moment and on a desktop without motion, and how it looks.
///
///     Stage stage;
///     stage.model().engine().start();
///     stage.open();
///     const QImage picture = stage.picture();
class Stage {
public:
    Stage();
    ~Stage();

    [[nodiscard]] AppModel& model() { return harness.model(); }
    [[nodiscard]] AppSettings& settings();
    [[nodiscard]] TimerEngine& engine();

    /// Shows the popover. What it is to show is arranged before; what it is to do comes after.
    void open();
    [[nodiscard]] QQuickWindow& window() { return *_window; }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Does to the control of that accessible name what a screen reader does to press it.
    void pressControl(const std::string& name);

    /// What the popover and everything that it opened show once they are at rest, on a plain desktop.
    [[nodiscard]] QImage picture();

    ModelHarness harness;
    FakeAppearance appearance;

private:
    WithoutTips _withoutTips;
    std::unique_ptr<PopoverPanel> _panel;
    QQuickWindow* _window = nullptr;
};

} // namespace selvane::test
