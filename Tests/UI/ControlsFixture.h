#pragma once

#include "Selvane/App/AppSettings.h"
#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/ThemeValues.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FakeAppearance.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlComponent>
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
    ControlsFixture() {
        QQmlComponent component(&engine);
        component.setData(
            "import QtQml\nimport Selvane.Controls\nQtObject { property ThemeValues it: Theme }", {});
        _theme.reset(component.create());
        EXPECT_NE(_theme, nullptr) << component.errorString().toStdString();
        theme().setLook(&look);
        window.resize(348, 420);
        window.setColor(theme().surface());
    }

    [[nodiscard]] ThemeValues& theme() { return *_theme->property("it").value<ThemeValues*>(); }

    /// Makes an item of QML's text, shows it at 40, 60 in the window and gives that the keyboard.
    QQuickItem* show(const QByteArray& text) {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport QtQuick.Layouts\nimport Selvane.Controls\n" + text,
                          QUrl(QStringLiteral("test.qml")));
        QObject* const made = component.create();
        EXPECT_NE(made, nullptr) << component.errorString().toStdString();
        QQuickItem* const item = qobject_cast<QQuickItem*>(made);
        if (!item)
            return nullptr;
        item->setParent(window.contentItem());
        item->setParentItem(window.contentItem());
        item->setPosition({40, 60});
        window.show();
        window.requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return item;
    }

    /// The item's middle, in the window.
    [[nodiscard]] static QPoint middle(const QQuickItem* item) {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }

    void clickOn(const QQuickItem* item) { QTest::mouseClick(&window, Qt::LeftButton, {}, middle(item)); }
    void key(Qt::Key which) { QTest::keyClick(&window, which); }

    /// What assistive technology knows of that name; null if nothing.
    [[nodiscard]] QAccessibleInterface* accessible(const QString& name) {
        return find(QAccessible::queryAccessibleInterface(&window), name);
    }

    /// Does what a screen reader does to press it.
    void pressAccessibly(const QString& name) {
        QAccessibleInterface* const control = accessible(name);
        ASSERT_NE(control, nullptr) << name.toStdString();
        ASSERT_NE(control->actionInterface(), nullptr);
        control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    MemoryDefaultsStore store;
    AppSettings settings{store};
    FakeAppearance appearance;
    Look look{settings, appearance};
    QQmlEngine engine;
    QQuickWindow window;

private:
    /// Holds the theme.
    std::unique_ptr<QObject> _theme;

    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
        if (!item)
            return nullptr;
        if (item->text(QAccessible::Name) == name)
            return item;
        for (int index = 0; index < item->childCount(); ++index) {
            if (QAccessibleInterface* const found = find(item->child(index), name))
                return found;
        }
        return nullptr;
    }
};

} // namespace selvane::test
