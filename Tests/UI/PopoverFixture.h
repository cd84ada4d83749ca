#pragma once

#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace selvane::test {

/// The popover as it is shown, without motion: its parts by the names of their types, and what assistive
/// technology is told of it.
class PopoverFixture : public testing::Test {
protected:
    PopoverFixture() : panel({&harness.launch(), &appearance, &harness.scheduler, &windows}) {
        appearance.setReducesMotion(true);
        window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
        panel.show({});
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        // The page comes with the second frame.
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return !parts(window->contentItem(), "TaskListView").empty(); }));
        settle();
    }

    AppModel& model() { return harness.model(); }
    TimerEngine& engine() { return model().engine(); }

    /// Lets what has changed find its place.
    void settle() const {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::processEvents();
            window->grabWindow();
        }
    }

    /// All below an item that a file of that name describes, or a C++ type of it.
    static std::vector<QQuickItem*> parts(const QQuickItem* item, const QByteArray& type) {
        std::vector<QQuickItem*> found;
        for (QQuickItem* const child : item->childItems()) {
            const QByteArray name = child->metaObject()->className();
            if (name.startsWith(type + "_QMLTYPE_") || name == "selvane::" + type)
                found.push_back(child);
            const std::vector<QQuickItem*> deeper = parts(child, type);
            found.insert(found.end(), deeper.begin(), deeper.end());
        }
        return found;
    }

    [[nodiscard]] QQuickItem* part(const QByteArray& type) const {
        const std::vector<QQuickItem*> found = parts(window->contentItem(), type);
        EXPECT_FALSE(found.empty()) << "there is no " << type.toStdString();
        return found.empty() ? window->contentItem() : found.front();
    }

    /// Where an item is in another.
    static QRectF frame(const QQuickItem* item, const QQuickItem* in) {
        return item->mapRectToItem(in, {{}, item->size()});
    }

    /// Where an item is on the card.
    [[nodiscard]] QRectF frame(const QQuickItem* item) const { return frame(item, part("PopoverView")); }

    /// What assistive technology knows of that name; null if nothing.
    [[nodiscard]] QAccessibleInterface* accessible(const QString& name) const {
        return find(QAccessible::queryAccessibleInterface(window), name);
    }

    /// The item of that name.
    [[nodiscard]] QQuickItem* control(const QString& name) const {
        QAccessibleInterface* const found = accessible(name);
        EXPECT_NE(found, nullptr) << "there is no " << name.toStdString();
        return found ? qobject_cast<QQuickItem*>(found->object()) : window->contentItem();
    }

    /// Does to the control of that name what a screen reader does to press it.
    void press(const QString& name) const {
        QAccessibleInterface* const found = accessible(name);
        ASSERT_NE(found, nullptr) << name.toStdString();
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    }

    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(window, which, modifiers);
        settle();
    }

    /// The name of what has the keyboard, as a screen reader says it.
    [[nodiscard]] std::string focused() const {
        QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return found ? found->text(QAccessible::Name).toStdString() : "nothing";
    }

    void showDrift(const char* name) {
        harness.answers.driftAppName = name;
        model().focusGuard().changed.emit();
        settle();
    }

    ModelHarness harness;
    FakeAppearance appearance;
    RecordingWindows windows{harness.journal};
    PopoverPanel panel;
    QQuickWindow* window = nullptr;

private:
    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
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
