#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/ThemeValues.h"
#include "Selvane/UI/Tasks/TaskListModel.h"
#include "Support/FakeAppearance.h"
#include "Support/FaultyFileSystem.h"
#include "Support/ModelHarness.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace selvane::test {

/// The list of tasks in a window of its own, driven by keys, clicks and a screen reader. Shows no motion
/// unless the test asks for it.
class TaskViewFixture : public testing::Test {
protected:
    static constexpr int width = 348;
    static constexpr int rowHeight = 34;
    /// Below the heading.
    static constexpr int listTop = 34;

    TaskViewFixture() {
        appearance.setReducesMotion(true);
        files.skipSyncs();
        harness.fileSystem = &files;
        model = &harness.launch();
        look = std::make_unique<Look>(model->settings(), appearance);
        tasks = std::make_unique<TaskListModel>(*model);
    }

    ~TaskViewFixture() override {
        _view.reset();
        _theme.reset();
    }

    void add(std::initializer_list<const char*> titles) {
        for (const char* const title : titles)
            model->addTask(title);
    }

    [[nodiscard]] UUID id(const std::string& title) const {
        for (const TaskItem& task : model->tasks().items) {
            if (task.title == title)
                return task.id;
        }
        ADD_FAILURE() << "there is no task " << title;
        return {};
    }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (const TaskItem& task : model->tasks().items)
            titles.push_back(task.title);
        return titles;
    }

    /// Ticks a task off and lets it find its place.
    void finish(const std::string& title) {
        model->toggleTask(id(title));
        harness.pass(Seconds{1});
    }

    /// Makes the view and gives the window the keyboard.
    void show() {
        QQmlComponent theme(&engine);
        theme.setData("import QtQml\nimport Selvane.Controls\nQtObject { property ThemeValues it: Theme }",
                      {});
        _theme.reset(theme.create());
        ASSERT_NE(_theme, nullptr) << theme.errorString().toStdString();
        this->theme().setLook(look.get());

        QQmlComponent component(
            &engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Tasks/TaskListView.qml")));
        _view.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
            {{QStringLiteral("tasks"), QVariant::fromValue(tasks.get())}})));
        ASSERT_NE(_view, nullptr) << component.errorString().toStdString();
        _view->setParentItem(window.contentItem());
        _view->setPosition(QPoint(0, top));
        _view->setSize({width, 236});
        window.resize(width, top + 236);
        window.setColor(this->theme().surface());
        // Stands for the window's own use of the key.
        QQmlComponent shortcut(&engine);
        shortcut.setData("import QtQuick\nItem { id: root; property int count: 0\n"
                         "Shortcut { sequence: \"Escape\"; onActivated: root.count += 1 } }",
                         {});
        _escape = qobject_cast<QQuickItem*>(shortcut.create());
        _escape->setParent(_view.get());
        _escape->setParentItem(window.contentItem());
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        polish();
    }

    [[nodiscard]] ThemeValues& theme() { return *_theme->property("it").value<ThemeValues*>(); }
    [[nodiscard]] QQuickItem& view() { return *_view; }
    /// How often Escape reached the window.
    [[nodiscard]] int escapes() const { return _escape->property("count").toInt(); }

    /// Lets the view come to rest: rows are made and placed.
    void polish() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::processEvents();
            window.grabWindow();
        }
    }

    /// A place in a row, as the window counts.
    [[nodiscard]] QPoint inRow(int row, int x = 120) const {
        return {x, top + listTop + row * rowHeight + rowHeight / 2};
    }

    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&window, which, modifiers);
        polish();
    }
    void type(const QString& text) {
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, &window, Qt::Key_unknown, QString(character), {});
        polish();
    }
    void click(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window, button, {}, place);
        polish();
    }
    void doubleClick(QPoint place) {
        click(place);
        QTest::mouseDClick(&window, Qt::LeftButton, {}, place);
        polish();
    }
    void press(QPoint place) { QTest::mousePress(&window, Qt::LeftButton, {}, place); }
    /// In small steps, as a hand moves.
    void moveMouse(QPoint from, QPoint to) {
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(&window, from + (to - from) * step / 10);
        polish();
    }
    void letGo(QPoint place) {
        QTest::mouseRelease(&window, Qt::LeftButton, {}, place);
        polish();
    }
    void drag(QPoint from, QPoint to) {
        press(from);
        moveMouse(from, to);
        letGo(to);
    }

    /// What assistive technology knows of that name; null if nothing.
    [[nodiscard]] QAccessibleInterface* accessible(const QString& name) {
        return find(QAccessible::queryAccessibleInterface(&window), name);
    }
    [[nodiscard]] bool isShown(const QString& name) {
        QAccessibleInterface* const item = accessible(name);
        return item && !item->state().invisible;
    }
    void pressAccessibly(const QString& name) {
        QAccessibleInterface* const control = accessible(name);
        ASSERT_NE(control, nullptr) << name.toStdString();
        ASSERT_NE(control->actionInterface(), nullptr) << name.toStdString();
        control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        polish();
    }
    /// The name of what has the keyboard, as a screen reader says it.
    [[nodiscard]] std::string focused() {
        QQuickItem* const item = window.activeFocusItem();
        QAccessibleInterface* const found = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return found ? found->text(QAccessible::Name).toStdString() : std::string();
    }

    /// From the top of the window to the view, so that tips have room.
    int top = 0;
    FaultyFileSystem files;
    ModelHarness harness;
    FakeAppearance appearance;
    AppModel* model = nullptr;
    std::unique_ptr<Look> look;
    std::unique_ptr<TaskListModel> tasks;
    QQmlEngine engine;
    QQuickWindow window;

private:
    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
        if (!item || item->state().invisible)
            return nullptr;
        if (item->text(QAccessible::Name) == name)
            return item;
        for (int index = 0; index < item->childCount(); ++index) {
            if (QAccessibleInterface* const found = find(item->child(index), name))
                return found;
        }
        return nullptr;
    }

    /// Holds the theme.
    std::unique_ptr<QObject> _theme;
    std::unique_ptr<QQuickItem> _view;
    QQuickItem* _escape = nullptr;
};

} // namespace selvane::test
