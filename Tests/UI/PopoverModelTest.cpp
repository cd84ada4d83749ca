#include "Selvane/UI/Popover/PopoverModel.h"

#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/PopoverText.h"
#include "Support/FakeAppearance.h"
#include "Support/LocalTime.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class PopoverModelTest : public testing::Test {
protected:
    PopoverModelTest() : popover(harness.launch(), appearance, harness.scheduler, nullptr) {}

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    PopoverModel popover;
};

TEST_F(PopoverModelTest, ControlsDriveTheTimerAndViewsHearOfIt) {
    ControlsModel& controls = *popover.controls();
    int changes = 0;
    QObject::connect(&controls, &ControlsModel::changed, &controls, [&] { ++changes; });
    EXPECT_EQ(controls.primaryLabel(), QStringLiteral("Start"));
    EXPECT_FALSE(controls.canReset());
    controls.toggle();
    EXPECT_TRUE(harness.model().engine().isRunning());
    EXPECT_EQ(controls.primaryLabel(), QStringLiteral("Pause"));
    EXPECT_TRUE(controls.canReset());
    controls.toggle();
    EXPECT_EQ(controls.primaryLabel(), QStringLiteral("Resume"));
    controls.reset();
    EXPECT_TRUE(harness.model().engine().isIdle());
    EXPECT_TRUE(harness.journal.has("music.pause"));
    EXPECT_EQ(controls.skipTooltip(), QStringLiteral("Skip to the break"));
    controls.skip();
    EXPECT_EQ(controls.skipTooltip(), QStringLiteral("Skip the break"));
    EXPECT_EQ(controls.resetTooltip(), QStringLiteral("Reset this phase"));
    EXPECT_EQ(changes, 4);
}

TEST_F(PopoverModelTest, TicksChangeNoControl) {
    int changes = 0;
    popover.controls()->toggle();
    QObject::connect(popover.controls(), &ControlsModel::changed, &popover, [&] { ++changes; });
    QObject::connect(&popover, &PopoverModel::sessionStatusChanged, &popover, [&] { ++changes; });
    harness.pass(Seconds{5});
    EXPECT_EQ(changes, 0);
}

TEST_F(PopoverModelTest, StatusFollowsTheTimerAndTheSettings) {
    EXPECT_EQ(popover.sessionStatus(), QStringLiteral("Session 1 of 4"));
    harness.model().settings().sessionsBeforeLongBreak.set(3);
    EXPECT_EQ(popover.sessionStatus(), QStringLiteral("Session 1 of 3"));
    popover.controls()->toggle();
    popover.controls()->toggle();
    EXPECT_EQ(popover.sessionStatus(), QStringLiteral("Session 1 of 3 · paused"));
}

TEST_F(PopoverModelTest, StatusIsReadAnewWhenShown) {
    popover.controls()->toggle();
    const QString before = popover.sessionStatus();
    harness.calendar = test::zone("Asia/Tokyo");
    EXPECT_EQ(popover.sessionStatus(), before) << "nothing tells of a journey";
    popover.prepareToShow();
    EXPECT_NE(popover.sessionStatus(), before);
    EXPECT_EQ(popover.sessionStatus(),
              PopoverText::sessionStatus(harness.model().engine(), harness.calendar, QLocale()));
}

TEST_F(PopoverModelTest, TabsAreNamedWithTheirKeys) {
    EXPECT_EQ(popover.tasksTitle(), QStringLiteral("Tasks"));
    EXPECT_EQ(popover.progressTitle(), QStringLiteral("Progress"));
    EXPECT_EQ(popover.tabTooltip(), QStringLiteral("Tasks Ctrl+1 · Progress Ctrl+2"));
}

TEST_F(PopoverModelTest, StreakIsCountedAnewWhenShown) {
    harness.model().settings().dailyGoalMinutes.set(10);
    popover.controls()->toggle();
    harness.pass(Seconds{601});
    popover.controls()->reset();
    EXPECT_TRUE(popover.header()->isTodayMet());
    harness.now += std::chrono::days{1};
    popover.prepareToShow();
    EXPECT_FALSE(popover.header()->isTodayMet());
}

TEST_F(PopoverModelTest, NoteAndStreakKeepUpWithTheClockOnlyWhileShown) {
    harness.answers.nextEvent = CalendarEvent{"Design review", harness.now + std::chrono::minutes{40}};
    const auto waiting = harness.scheduler.waiting();
    popover.prepareToShow();
    EXPECT_EQ(harness.scheduler.waiting(), waiting + 2);
    popover.didHide();
    EXPECT_EQ(harness.scheduler.waiting(), waiting);
}

TEST_F(PopoverModelTest, ShadowNeedsADesktopWithClearWindowsAndIsAskedForWhenShown) {
    int changes = 0;
    QObject::connect(&popover, &PopoverModel::shadowMarginChanged, &popover, [&] { ++changes; });
    popover.prepareToShow();
    EXPECT_EQ(popover.shadowMargin(), 0);
    appearance.setComposited(true);
    popover.prepareToShow();
    EXPECT_EQ(popover.shadowMargin(), PanelPlacement::shadowMargin);
    popover.prepareToShow();
    EXPECT_EQ(changes, 1);
}

TEST_F(PopoverModelTest, AppearanceIsTheDesktops) {
    int changes = 0;
    QObject::connect(popover.look(), &Look::changed, &popover, [&] { ++changes; });
    EXPECT_FALSE(popover.look()->isDark());
    appearance.setDark(true);
    EXPECT_TRUE(popover.look()->isDark());
    EXPECT_EQ(changes, 1);
}

TEST_F(PopoverModelTest, QuitOfTheMenuReachesThePanel) {
    int quits = 0;
    QObject::connect(&popover, &PopoverModel::quitRequested, &popover, [&] { ++quits; });
    popover.header()->quit();
    EXPECT_EQ(quits, 1);
}

} // namespace
} // namespace selvane
