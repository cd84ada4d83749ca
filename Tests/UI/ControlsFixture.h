#pragma once

#include "Selvane/App/AppSettings.h"
#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/ThemeValues.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FakeAppearance.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace selvane::test {

/// A window as wide as the panel with controls in it, and the desktop and the settings that they follow.
///
///     QQuickItem* const button = show(R"(PillButton { text: "Start" })");
///     clickOn(button);
class ControlsFixture : public testing::Test {
protected:
    ControlsFixture();
    ~ControlsFixture() override;

    [[nodiscard]] ThemeValues& theme() { return *_theme->property("it").value<ThemeValues*>(); }

    /// Makes an item of QML's text, shows it at 40, 60 in the window and gives that the keyboard.
    QQuickItem* show(const QByteArray& text);

    /// The item's middle, in the window.
    [[nodiscard]] static QPoint middle(const QQuickItem* item) {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }

    void clickOn(const QQuickItem* item) { QTest::mouseClick(&window, Qt::LeftButton, {}, middle(item)); }
    void key(Qt::Key which) { QTest::keyClick(&window, which); }

    /// What assistive technology knows of that name; null if nothing.
    [[nodiscard]] QAccessibleInterface* accessible(const QString& name);

    /// Does what a screen reader does to press it.
    void pressAccessibly(const QString& name);

    MemoryDefaultsStore store;
    AppSettings settings{store};
    FakeAppearance appearance;
    Look look{settings, appearance};
    QQmlEngine engine;
    QQuickWindow window;

private:
    /// Holds the theme.
    std::unique_ptr<QObject> _theme;
};

} // namespace selvane::test
