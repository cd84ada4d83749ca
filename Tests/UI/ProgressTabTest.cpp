#include "Selvane/UI/Controls/HoverTip.h"
#include "Selvane/UI/Progress/ProgressModel.h"
#include "Support/ModelHarness.h"

#include <QAccessible>
#include <QQmlError>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace selvane {
namespace {

class ProgressTabTest : public testing::Test {
protected:
    ProgressTabTest() : progress(harness.launch(), harness.scheduler) {
        view.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&progress)}});
        view.setSource(QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Progress/ProgressTab.qml")));
        for (const QQmlError& error : view.errors())
            ADD_FAILURE() << error.toString().toStdString();
        view.show();
        view.requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    /// Role and description of everything that assistive technology is told of, by name.
    using Spoken = std::map<std::string, std::pair<QAccessible::Role, std::string>>;
    [[nodiscard]] Spoken spoken() {
        Spoken found;
        collect(*QAccessible::queryAccessibleInterface(&view), found);
        return found;
    }

    test::ModelHarness harness;
    ProgressModel progress;
    QQuickView view;

private:
    static void collect(QAccessibleInterface& item, Spoken& found) {
        const std::string name = item.text(QAccessible::Name).toStdString();
        if (!name.empty() && !item.state().invisible)
            found[name] = {item.role(), item.text(QAccessible::Description).toStdString()};
        for (int index = 0; index < item.childCount(); ++index)
            collect(*item.child(index), found);
    }
};

TEST_F(ProgressTabTest, HasItsSize) {
    EXPECT_EQ(view.size(), QSize(348, 236));
}

TEST_F(ProgressTabTest, ScreenReaderHearsEveryFigure) {
    using Entry = std::pair<const std::string, std::pair<QAccessible::Role, std::string>>;
    EXPECT_THAT(
        spoken(),
        testing::IsSupersetOf(
            {Entry{"0 day streak", {QAccessible::StaticText, "7 days to your 7-day milestone"}},
             Entry{"0 best", {QAccessible::StaticText, ""}},
             Entry{
                 "0 freezes",
                 {QAccessible::StaticText,
                  "Earn a streak freeze every 7 days (hold up to 2). A missed day uses one automatically."}},
             Entry{"Today: 0m of your 50m goal", {QAccessible::StaticText, ""}},
             Entry{"Last 18 weeks: focus on 0 days, goal met on 0", {QAccessible::Chart, ""}}}));
}

TEST_F(ProgressTabTest, ScoreIsThereOnlyIfThereIsOne) {
    EXPECT_EQ(spoken().count("100% focused"), 0U);
    const Date start = test::ModelHarness::launchTime;
    FocusSession session{UUID::random(),
                         start,
                         start + std::chrono::minutes{20},
                         Phase::focus,
                         Seconds{1200},
                         Seconds{1200},
                         true,
                         {},
                         {{{"org.example.Editor", "Editor", Seconds{1200}}}}};
    harness.model().settings().distractingApps.set({"org.example.Game"});
    harness.model().setSessions({session});
    EXPECT_EQ(spoken().count("100% focused"), 1U);
    EXPECT_EQ(spoken().count("Today: 20m of your 50m goal"), 1U);
}

TEST_F(ProgressTabTest, KeyboardReachesEveryFigureThatExplainsItself) {
    std::vector<std::string> names;
    for (int stop = 0; stop < 4; ++stop) {
        QTest::keyClick(&view, Qt::Key_Tab);
        ASSERT_NE(view.activeFocusItem(), nullptr);
        const QAccessibleInterface* const item =
            QAccessible::queryAccessibleInterface(view.activeFocusItem());
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->state().focusable);
        names.push_back(item->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(names, testing::ElementsAre("0 day streak", "Today: 0m of your 50m goal", "0 freezes",
                                            "Last 18 weeks: focus on 0 days, goal met on 0"));
}

TEST_F(ProgressTabTest, KeyboardBringsUpTheWordsOfAFigure) {
    const auto words = [this] {
        const QQuickItem* const item = view.activeFocusItem();
        const auto* const tip = item ? item->findChild<HoverTip*>() : nullptr;
        return tip && tip->isVisible() ? tip->text() : QString();
    };
    QTest::keyClick(&view, Qt::Key_Tab);
    EXPECT_EQ(words(), QStringLiteral("7 days to your 7-day milestone"));
    QTest::keyClick(&view, Qt::Key_Tab);
    EXPECT_EQ(words(), QStringLiteral("Today: 0m of your 50m goal"));
    const QQuickItem* const ring = view.activeFocusItem();
    QTest::keyClick(&view, Qt::Key_Tab);
    EXPECT_EQ(words(), progress.freezesTooltip());
    EXPECT_FALSE(ring->findChild<HoverTip*>()->isVisible());
}

TEST_F(ProgressTabTest, KeyboardReachesTheDaysOfTheHeatmap) {
    QTest::keyClick(&view, Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_NE(view.activeFocusItem(), nullptr);
    EXPECT_EQ(view.activeFocusItem()->property("weeks").toInt(), 18);
    QTest::keyClick(&view, Qt::Key_Up);
    const auto chart = spoken().at("Last 18 weeks: focus on 0 days, goal met on 0");
    EXPECT_NE(chart.second.find("no focus"), std::string::npos);
    EXPECT_EQ(chart.second, view.activeFocusItem()->property("cursorTip").toString().toStdString());
}

TEST_F(ProgressTabTest, TabThatIsGoneIsNotSeen) {
    delete view.rootObject();
    EXPECT_FALSE(progress.isShown());
}

TEST_F(ProgressTabTest, ModelKnowsWhetherTheTabIsSeen) {
    EXPECT_TRUE(progress.isShown());
    view.hide();
    EXPECT_FALSE(progress.isShown());
    view.show();
    EXPECT_TRUE(progress.isShown());
    view.rootObject()->setVisible(false);
    EXPECT_FALSE(progress.isShown());
}

} // namespace
} // namespace selvane
