#include "Selvane/UI/Controls/LazyPopup.h"
#include "Selvane/UI/Popover/HeadStart.h"
#include "Selvane/UI/Popover/PopoverModel.h"
#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQmlAbstractUrlInterceptor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace selvane {
namespace {

using testing::Contains;
using testing::Not;

/// Notes which QML files an engine reads. Files are also read on the engine's own thread.
class Reading final : public QQmlAbstractUrlInterceptor {
public:
    QUrl intercept(const QUrl& url, DataType type) override {
        const std::scoped_lock lock(_mutex);
        if (type == QmlFile && _names.insert(url.fileName().toStdString()).second)
            _order.push_back(url.fileName().toStdString());
        if (type == QmldirFile)
            _modules.insert(url.path().section(u'/', -2, -2).toStdString());
        return url;
    }

    [[nodiscard]] std::set<std::string> names() const {
        const std::scoped_lock lock(_mutex);
        return _names;
    }

    /// The names as they were first asked for.
    [[nodiscard]] std::vector<std::string> order() const {
        const std::scoped_lock lock(_mutex);
        return _order;
    }

    /// The last part of the names of the modules.
    [[nodiscard]] std::set<std::string> modules() const {
        const std::scoped_lock lock(_mutex);
        return _modules;
    }

private:
    mutable std::mutex _mutex;
    std::set<std::string> _names;
    std::vector<std::string> _order;
    std::set<std::string> _modules;
};

/// The popover as it is made for its first frame. Each file that the engine reads for it costs time before
/// that frame, and memory as long as the panel is there.
class FirstFrameTest : public testing::Test {
protected:
    FirstFrameTest() { harness.launch(); }

    ~FirstFrameTest() override {
        popover.reset();
        engine.removeUrlInterceptor(&reading);
    }

    void make() {
        engine.addUrlInterceptor(&reading);
        model = std::make_unique<PopoverModel>(harness.model(), appearance, harness.scheduler, nullptr);
        model->begin();
        QQmlComponent component(
            &engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Popover/Popover.qml")));
        popover.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
            {{QStringLiteral("model"), QVariant::fromValue(model.get())}})));
        ASSERT_NE(popover, nullptr) << component.errorString().toStdString();
    }

    /// The files of all views.
    [[nodiscard]] static std::set<std::string> views() {
        std::set<std::string> names;
        QDirIterator files(QStringLiteral(":/qt-project.org/imports/Selvane"), {QStringLiteral("*.qml")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            names.insert(QFileInfo(files.next()).fileName().toStdString());
        return names;
    }

    void expectUnread(std::initializer_list<const char*> files) const {
        for (const char* const file : files) {
            EXPECT_THAT(views(), Contains(file)) << "it has another name now";
            EXPECT_THAT(reading.names(), Not(Contains(file)));
        }
    }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    Reading reading;
    std::unique_ptr<PopoverModel> model;
    QQmlEngine engine;
    std::unique_ptr<QQuickItem> popover;
};

TEST_F(FirstFrameTest, ReadsWhatItDraws) {
    make();
    for (const char* const file :
         {"Popover.qml", "TimerFace.qml", "RingFace.qml", "PhaseMenu.qml", "MusicRow.qml", "TabSwitcher.qml"})
        EXPECT_THAT(reading.names(), Contains(file));
}

TEST_F(FirstFrameTest, ReadsNothingOfThePageThatComesAfterIt) {
    harness.model().addTask("Write");
    make();
    expectUnread({"TaskListView.qml", "TaskRow.qml", "TaskTitle.qml", "AddTaskField.qml",
                  "PlainTextField.qml", "CheckCircle.qml", "ScrollThumb.qml", "EdgeFade.qml"});
    model->complete();
    EXPECT_THAT(reading.names(), Contains("TaskListView.qml"));
    EXPECT_THAT(reading.names(), Contains("TaskRow.qml"));
}

TEST_F(FirstFrameTest, NeedsItsPartsInTheOrderOfTheHeadStart) {
    make();
    std::vector<std::string> parts;
    for (const QUrl& file : HeadStart::partFiles(TimerStyle::ring))
        parts.push_back(file.fileName().toStdString());
    std::vector<std::string> needed;
    for (const std::string& name : reading.order()) {
        if (std::find(parts.begin(), parts.end(), name) != parts.end())
            needed.push_back(name);
    }
    EXPECT_EQ(needed, parts);
}

TEST_F(FirstFrameTest, ReadsNoMenuEditorOrPageThatIsNotSeen) {
    harness.model().addTask("Write");
    make();
    expectUnread({"PopupMenu.qml",    "MeasuredMenu.qml", "PopupMenuItem.qml", "PopupMenuSeparator.qml",
                  "PhaseChoices.qml", "SoundChoices.qml", "MoreCommands.qml",  "KeyedMenuItem.qml",
                  "TaskChoices.qml",  "OpenTaskMenu.qml", "DoneTaskMenu.qml",  "PopupCard.qml",
                  "PopupSurface.qml", "SymbolCard.qml",   "SymbolPanel.qml",   "SymbolGrid.qml",
                  "SymbolTile.qml",   "MinutesField.qml", "TitleEditor.qml",   "ProgressTab.qml",
                  "GoalRing.qml",     "HeatmapView.qml",  "MetaStat.qml",      "TipArea.qml",
                  "TipBubble.qml"});
}

TEST_F(FirstFrameTest, NeedsNoModuleOfControlsOrLayouts) {
    harness.model().addTask("Write");
    make();
    EXPECT_THAT(reading.modules(), Contains("Popover"));
    EXPECT_THAT(reading.modules(), Contains("QtQuick"));
    for (const char* const module : {"Templates", "Controls.2", "Layouts", "Window", "Shapes"})
        EXPECT_THAT(reading.modules(), Not(Contains(module)));
}

TEST_F(FirstFrameTest, ReadsOnlyTheChosenStyleOfTheFace) {
    harness.model().settings().timerStyle.set(TimerStyle::bar);
    make();
    EXPECT_THAT(reading.names(), Contains("BarFace.qml"));
    expectUnread({"RingFace.qml", "MinimalFace.qml"});
}

TEST_F(FirstFrameTest, WhatIsWantedLaterIsReadThen) {
    make();
    harness.model().settings().timerStyle.set(TimerStyle::minimal);
    EXPECT_THAT(reading.names(), Contains("MinimalFace.qml"));
    for (LazyPopup* const popup : popover->findChildren<LazyPopup*>()) {
        popup->open();
        EXPECT_NE(popup->made(), nullptr) << popup->source().fileName().toStdString();
    }
    for (const char* const file :
         {"PhaseChoices.qml", "SoundChoices.qml", "MoreCommands.qml", "TaskChoices.qml", "SymbolCard.qml"})
        EXPECT_THAT(reading.names(), Contains(file));
}

/// How many rows of tasks there are in `item`.
int rowsIn(const QQuickItem& item) {
    int rows = item.property("taskID").isValid() ? 1 : 0;
    for (const QQuickItem* const child : item.childItems())
        rows += rowsIn(*child);
    return rows;
}

TEST_F(FirstFrameTest, PageComesWithTheFrameAfterIt) {
    for (const char* const title : {"Write", "Read", "Rest"})
        harness.model().addTask(title);
    PopoverPanel panel({&harness.model(), &appearance, &harness.scheduler, nullptr});
    ASSERT_TRUE(panel.isReady());
    auto* const window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
    ASSERT_NE(window, nullptr);
    panel.show({});
    const QSize size = window->size();
    EXPECT_EQ(rowsIn(*window->contentItem()), 0);
    QSignalSpy frames(window, &QQuickWindow::frameSwapped);
    ASSERT_TRUE(frames.wait());
    ASSERT_TRUE(QTest::qWaitFor([&] { return rowsIn(*window->contentItem()) == 3; }));
    EXPECT_EQ(window->size(), size);

    // It stays.
    panel.hide();
    panel.show({});
    EXPECT_EQ(rowsIn(*window->contentItem()), 3);
}

TEST_F(FirstFrameTest, PanelThatIsHiddenBeforeItHasItsPageGetsItLater) {
    harness.model().addTask("Write");
    PopoverPanel panel({&harness.model(), &appearance, &harness.scheduler, nullptr});
    auto* const window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
    ASSERT_NE(window, nullptr);
    panel.show({});
    panel.hide();
    EXPECT_EQ(rowsIn(*window->contentItem()), 0);
    panel.show({});
    EXPECT_TRUE(QTest::qWaitFor([&] { return rowsIn(*window->contentItem()) == 1; }));
}

} // namespace
} // namespace selvane
