#include "Selvane/UI/Progress/ProgressModel.h"

#include "Selvane/UI/Progress/HeatmapDays.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class ProgressModelTest : public testing::Test {
protected:
    ProgressModelTest() {
        harness.launch();
        QObject::connect(&progress(), &ProgressModel::changed, &progress(), [this] { ++changes; });
    }

    ProgressModel& progress() {
        if (!_progress)
            _progress = std::make_unique<ProgressModel>(harness.model(), harness.scheduler);
        return *_progress;
    }
    AppSettings& settings() { return harness.model().settings(); }

    /// A session of focus at noon, `daysAgo` days before the present one.
    [[nodiscard]] FocusSession session(int daysAgo, int minutes) const {
        const Date start = test::ModelHarness::launchTime - std::chrono::days{daysAgo};
        const Seconds length{minutes * 60.0};
        return {UUID::random(), start, adding(length, start), Phase::focus, length, length, true, {}, {}};
    }
    void focus(int minutes) {
        harness.model().engine().start();
        harness.pass(Seconds{minutes * 60.0});
        harness.model().engine().reset();
    }

    test::ModelHarness harness;
    int changes = 0;

private:
    std::unique_ptr<ProgressModel> _progress;
};

TEST_F(ProgressModelTest, BeginsWithNothing) {
    EXPECT_EQ(progress().streak(), QStringLiteral("0"));
    EXPECT_EQ(progress().streakDescription(), QStringLiteral("0 day streak"));
    EXPECT_EQ(progress().milestone(), QStringLiteral("7 days to your 7-day milestone"));
    EXPECT_EQ(progress().best(), QStringLiteral("0 best"));
    EXPECT_EQ(progress().freezes(), QStringLiteral("0 freezes"));
    EXPECT_EQ(progress().todayMinutes(), 0);
    EXPECT_EQ(progress().dailyGoalMinutes(), 50);
    EXPECT_EQ(progress().score(), QString());
    ASSERT_NE(progress().heatmap().days(), nullptr);
    EXPECT_EQ(progress().heatmap().days()->today, (DayKey{2026, 3, 5}));
}

TEST_F(ProgressModelTest, CountsTheHistory) {
    std::vector<FocusSession> sessions;
    for (int daysAgo = 9; daysAgo >= 1; --daysAgo) {
        if (daysAgo != 2)
            sessions.push_back(session(daysAgo, 60));
    }
    sessions.push_back(session(0, 20));
    harness.model().setSessions(sessions);
    EXPECT_EQ(progress().streak(), QStringLiteral("8"));
    EXPECT_EQ(progress().milestone(), QStringLiteral("22 days to your 30-day milestone"));
    EXPECT_EQ(progress().best(), QStringLiteral("8 best"));
    EXPECT_EQ(progress().freezes(), QStringLiteral("0 freezes"));
    EXPECT_EQ(progress().todayMinutes(), 20);
    const HeatmapDays& days = *progress().heatmap().days();
    EXPECT_TRUE(days.frozenDays.contains({2026, 3, 3}));
    EXPECT_EQ(days.minutesByDay.at({2026, 3, 4}), 60);
    EXPECT_EQ(days.goal, 50);
}

TEST_F(ProgressModelTest, TellsOfASessionWhileItIsShown) {
    progress().setShown(true);
    EXPECT_EQ(changes, 1) << "nothing was counted before";
    focus(2);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(progress().todayMinutes(), 2);
}

TEST_F(ProgressModelTest, TicksAloneChangeNothing) {
    progress().setShown(true);
    changes = 0;
    harness.model().engine().start();
    harness.pass(Seconds{90});
    EXPECT_EQ(changes, 0);
}

TEST_F(ProgressModelTest, KeepsSilentWhileNobodyLooksAndIsRightWhenShownAgain) {
    progress().setShown(true);
    progress().setShown(false);
    changes = 0;
    focus(2);
    settings().dailyGoalMinutes.set(90);
    EXPECT_EQ(changes, 0);
    progress().setShown(true);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(progress().todayMinutes(), 2);
    EXPECT_EQ(progress().dailyGoalMinutes(), 90);
    progress().setShown(false);
    progress().setShown(true);
    EXPECT_EQ(changes, 1) << "nothing has changed meanwhile";
}

TEST_F(ProgressModelTest, FollowsTheSettingsThatCount) {
    progress().setShown(true);
    changes = 0;
    settings().dailyGoalMinutes.set(90);
    EXPECT_EQ(progress().dailyGoalMinutes(), 90);
    settings().dayStartHour.set(6);
    settings().streakFreezesEnabled.set(false);
    EXPECT_EQ(changes, 3);
    settings().musicVolume.set(0.2);
    EXPECT_EQ(changes, 3);
}

TEST_F(ProgressModelTest, GoesOnToTheNewDay) {
    progress().setShown(true);
    focus(2);
    progress().setShown(false);
    harness.now += std::chrono::days{1};
    progress().setShown(true);
    EXPECT_EQ(progress().todayMinutes(), 0);
    EXPECT_EQ(progress().heatmap().days()->today, (DayKey{2026, 3, 6}));
}

TEST_F(ProgressModelTest, NoticesTheNewDayWhileThePhaseRuns) {
    progress().setShown(true);
    focus(2);
    settings().setMinutes(60, Phase::focus);
    harness.now = test::ModelHarness::launchTime + std::chrono::hours{17} + std::chrono::minutes{59};
    harness.model().engine().start();
    EXPECT_EQ(progress().todayMinutes(), 2);
    changes = 0;
    harness.pass(Seconds{120});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(progress().todayMinutes(), 0);
}

TEST_F(ProgressModelTest, NoticesTheNewDayWhileNothingRuns) {
    settings().dayStartHour.set(4);
    progress().setShown(true);
    changes = 0;
    harness.pass(std::chrono::hours{18} - Seconds{1});
    EXPECT_EQ(changes, 0);
    harness.pass(Seconds{2});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(progress().heatmap().days()->today, (DayKey{2026, 3, 6}));
    harness.pass(std::chrono::hours{24});
    EXPECT_EQ(progress().heatmap().days()->today, (DayKey{2026, 3, 7}));
    EXPECT_EQ(changes, 2);
}

TEST_F(ProgressModelTest, WaitsForNoDayWhileNobodyLooks) {
    progress();
    const auto before = harness.scheduler.waiting();
    progress().setShown(true);
    EXPECT_EQ(harness.scheduler.waiting(), before + 1);
    settings().dailyGoalMinutes.set(90);
    EXPECT_EQ(harness.scheduler.waiting(), before + 1);
    progress().setShown(false);
    EXPECT_EQ(harness.scheduler.waiting(), before);
}

TEST_F(ProgressModelTest, SameHistoryIsTheSameHeatmap) {
    EXPECT_EQ(progress().heatmap(), progress().heatmap());
}

TEST_F(ProgressModelTest, ScoreIsThatOfToday) {
    settings().distractingApps.set({"org.example.Game"});
    FocusSession played = session(0, 20);
    played.apps = {{"org.example.Editor", "Editor", Seconds{900}},
                   {"org.example.Game", "Game", Seconds{300}}};
    harness.model().setSessions({played});
    EXPECT_EQ(progress().score(), QStringLiteral("75% focused"));
    progress().setShown(true);
    changes = 0;
    settings().distractingApps.set({"org.example.Editor"});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(progress().score(), QStringLiteral("25% focused"));
    settings().focusGuardMode.set(FocusGuardMode::off);
    EXPECT_EQ(progress().score(), QString());
}

} // namespace
} // namespace selvane
