#include "Selvane/UI/Popover/PopoverModel.h"

#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class PopoverModelTest : public testing::Test {
protected:
    PopoverModelTest() { harness.launch(); }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
};

TEST_F(PopoverModelTest, ShowsTheTimer) {
    const PopoverModel popover(harness.model(), appearance);
    EXPECT_EQ(popover.phaseTitle(), QStringLiteral("Focus"));
    EXPECT_EQ(popover.time(), QStringLiteral("25:00"));
    EXPECT_EQ(popover.primaryLabel(), QStringLiteral("Start"));
    EXPECT_FALSE(popover.canReset());
    EXPECT_FALSE(popover.isPaused());
}

TEST_F(PopoverModelTest, CommandsDriveTheTimerAndViewsHearOfIt) {
    PopoverModel popover(harness.model(), appearance);
    int changes = 0;
    QObject::connect(&popover, &PopoverModel::timerChanged, &popover, [&] { ++changes; });
    popover.toggle();
    EXPECT_TRUE(harness.model().engine().isRunning());
    popover.toggle();
    EXPECT_TRUE(popover.isPaused());
    popover.reset();
    EXPECT_TRUE(harness.model().engine().isIdle());
    popover.skip();
    EXPECT_EQ(popover.phaseTitle(), QStringLiteral("Short Break"));
    EXPECT_EQ(changes, 4);
}

TEST_F(PopoverModelTest, TodayIsCountedAnewWithEverySessionAndWhenShown) {
    PopoverModel popover(harness.model(), appearance);
    int changes = 0;
    QObject::connect(&popover, &PopoverModel::footerChanged, &popover, [&] { ++changes; });
    popover.toggle();
    harness.pass(Seconds{61});
    popover.reset();
    EXPECT_EQ(popover.footer(), QStringLiteral("Today: 1m of your 50m goal"));
    EXPECT_EQ(changes, 1);
    harness.now += std::chrono::days{1};
    popover.prepareToShow();
    EXPECT_EQ(popover.footer(), QStringLiteral("Today: 0m of your 50m goal"));
    EXPECT_EQ(changes, 2);
    popover.prepareToShow();
    EXPECT_EQ(changes, 2);
}

TEST_F(PopoverModelTest, TodayFollowsTheGoal) {
    const PopoverModel popover(harness.model(), appearance);
    harness.model().settings().dailyGoalMinutes.set(90);
    EXPECT_EQ(popover.footer(), QStringLiteral("Today: 0m of your 1h 30m goal"));
}

TEST_F(PopoverModelTest, FailureToSaveTakesThePlaceOfToday) {
    PopoverModel popover(harness.model(), appearance);
    harness.folder.write("Selvane", "a file where the folder should be");
    popover.toggle();
    harness.pass(Seconds{61});
    popover.reset();
    EXPECT_TRUE(popover.hasProblem());
    EXPECT_TRUE(popover.footer().startsWith(QStringLiteral("Selvane couldn't save sessions.json: ")));
}

TEST_F(PopoverModelTest, CompositorIsAskedForWhenShown) {
    PopoverModel popover(harness.model(), appearance);
    int changes = 0;
    QObject::connect(&popover, &PopoverModel::appearanceChanged, &popover, [&] { ++changes; });
    appearance.setComposited(true);
    popover.prepareToShow();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(popover.isComposited());
}

TEST_F(PopoverModelTest, AppearanceIsTheDesktops) {
    PopoverModel popover(harness.model(), appearance);
    int changes = 0;
    QObject::connect(popover.look(), &Look::changed, &popover, [&] { ++changes; });
    EXPECT_FALSE(popover.look()->isDark());
    appearance.setDark(true);
    EXPECT_TRUE(popover.look()->isDark());
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace selvane
