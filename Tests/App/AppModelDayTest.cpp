#include "Support/LocalTime.h"
#include "Support/ModelHarness.h"
#include "Support/TaskFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class AppModelDay : public testing::Test {
protected:
    AppModel& launchWith(std::initializer_list<test::TaskLine> tasks) {
        harness.folder.write("Selvane/tasks.json", test::taskFile(tasks));
        return harness.launch();
    }

    void focusFor(Seconds length) {
        harness.model().engine().start();
        harness.pass(length);
        harness.model().engine().reset();
    }

    test::ModelHarness harness;
};

TEST_F(AppModelDay, DoneTasksOfEarlierDaysGoAtLaunch) {
    const AppModel& model = launchWith({{test::firstTask},
                                        {test::secondTask, true, "2026-03-05T09:00:00Z"},
                                        {test::thirdTask, true, "2026-03-04T09:00:00Z"}});
    ASSERT_THAT(model.tasks().items, SizeIs(2));
    EXPECT_EQ(model.tasks().find(*UUID::parse(test::thirdTask)), nullptr);
    EXPECT_EQ(harness.folder.read("Selvane/tasks.json").find(test::thirdTask), std::string::npos)
        << "persisted";
}

TEST_F(AppModelDay, TaskDoneBeforeTheDayStartHourCountsAsYesterdays) {
    harness.now = test::utc(2026, 3, 5, 3, 30);
    AppModel& model = launchWith({{test::firstTask, true, "2026-03-05T03:00:00Z"}});
    ASSERT_THAT(model.tasks().items, SizeIs(1)) << "at 03:30 it is still yesterday";
    harness.now = test::utc(2026, 3, 5, 4, 0);
    model.refreshForDisplay();
    EXPECT_THAT(model.tasks().items, SizeIs(0));
}

TEST_F(AppModelDay, NextDayBeginsAtTheDayStartHour) {
    harness.now = test::utc(2026, 3, 5, 22, 30);
    AppModel& model = harness.launch();
    model.settings().dayStartHour.set(4);
    EXPECT_EQ(model.untilNextDay(), std::chrono::hours{5} + std::chrono::minutes{30});
    harness.now = test::utc(2026, 3, 6, 3, 59);
    EXPECT_EQ(model.untilNextDay(), Seconds{60});
    harness.now = test::utc(2026, 3, 6, 4, 0);
    EXPECT_EQ(model.untilNextDay(), std::chrono::hours{24});
}

TEST_F(AppModelDay, DoneTaskWithoutADateAlwaysGoes) {
    EXPECT_THAT(launchWith({{test::firstTask, true}}).tasks().items, SizeIs(0));
}

TEST_F(AppModelDay, DoneTasksStayForEverWithTheSettingOff) {
    AppModel& model = launchWith({{test::firstTask, true, "2026-03-05T09:00:00Z"}});
    model.settings().autoClearCompletedTasks.set(false);
    harness.now += std::chrono::days{400};
    model.rollOverDay();
    EXPECT_THAT(model.tasks().items, SizeIs(1));
}

TEST_F(AppModelDay, NothingIsWrittenWhenNoTaskGoes) {
    const std::string text = test::taskFile({{test::firstTask}});
    harness.folder.write("Selvane/tasks.json", text);
    harness.launch().rollOverDay();
    EXPECT_EQ(harness.folder.read("Selvane/tasks.json"), text);
}

TEST_F(AppModelDay, OpeningAViewBacksUpRollsOverTicksAndRefreshesInThisOrder) {
    AppModel& model = launchWith({{test::firstTask, true, "2026-03-05T09:00:00Z"}});
    model.settings().autoStartBreaks.set(false);
    model.engine().start();
    harness.now += std::chrono::days{2};
    harness.journal.clear();
    const auto tasks = model.tasksChanged.subscribe([&](TaskChange) { harness.journal.note("rolled over"); });
    model.refreshForDisplay();
    EXPECT_THAT(harness.journal.entries(),
                ElementsAre("lifecycle.backUpDaily", "rolled over", "activity.end",
                            "notifications.deliver selvane.phase-end", "notifications.remove selvane.meeting",
                            "guard.finish", "sound Glass", "signal", "music.pause", "calendar.refresh"));
}

TEST_F(AppModelDay, TodayCountsFocusFromTheDayStartHourOn) {
    harness.now = test::utc(2026, 3, 5, 3, 50);
    AppModel& model = harness.launch();
    focusFor(Seconds{120});
    EXPECT_EQ(model.todayMinutes(), 2);
    harness.now = test::utc(2026, 3, 5, 4, 0);
    EXPECT_EQ(model.todayMinutes(), 0);
    focusFor(Seconds{180});
    EXPECT_EQ(model.todayMinutes(), 3);
}

TEST_F(AppModelDay, TodayFollowsTheZone) {
    AppModel& model = harness.launch();
    focusFor(Seconds{600});
    EXPECT_EQ(model.todayMinutes(), 10);
    harness.now += std::chrono::hours{16};
    EXPECT_EQ(model.todayMinutes(), 10) << "02:10 in UTC";
    harness.calendar = test::zone("Asia/Tokyo");
    EXPECT_EQ(model.todayMinutes(), 0) << "11:10 of the next day in Tokyo";
}

TEST_F(AppModelDay, StreakReadsGoalAndHistory) {
    AppModel& model = harness.launch();
    model.settings().dailyGoalMinutes.set(10);
    focusFor(Seconds{600});
    EXPECT_EQ(model.streak().current, 1);
    EXPECT_TRUE(model.streak().todayMet);
    harness.now += std::chrono::days{1};
    EXPECT_EQ(model.streak().current, 1);
    EXPECT_FALSE(model.streak().todayMet);
    model.settings().dailyGoalMinutes.set(11);
    EXPECT_EQ(model.streak().current, 0);
}

TEST_F(AppModelDay, FocusScoreIsAbsentWithoutGuardOrDistractions) {
    AppModel& model = harness.launch();
    harness.answers.usage =
        std::vector{AppUsage{"org.editor", "Editor", Seconds{90}}, AppUsage{"org.chat", "Chat", Seconds{30}}};
    focusFor(Seconds{120});
    EXPECT_EQ(model.todayFocusScore(), std::nullopt) << "nothing is distracting";
    model.settings().distractingApps.set({"org.chat"});
    EXPECT_EQ(model.todayFocusScore(), 0.75);
    model.settings().focusGuardMode.set(FocusGuardMode::off);
    EXPECT_EQ(model.todayFocusScore(), std::nullopt) << "the guard is off";
    model.settings().focusGuardMode.set(FocusGuardMode::hide);
    harness.now += std::chrono::days{1};
    EXPECT_EQ(model.todayFocusScore(), std::nullopt) << "nothing was followed today";
}

TEST_F(AppModelDay, UntickedCurrentTaskComesBack) {
    AppModel& model = launchWith({{test::firstTask, true, "2026-03-05T09:00:00Z"}, {test::secondTask}});
    model.setCurrentTaskID(*UUID::parse(test::firstTask));
    EXPECT_EQ(model.currentTask(), nullptr);
    EXPECT_EQ(model.currentTaskID(), UUID::parse(test::firstTask)) << "kept all the same";
    model.setCurrentTaskID(*UUID::parse(test::secondTask));
    ASSERT_NE(model.currentTask(), nullptr);
    EXPECT_EQ(model.currentTask()->id, *UUID::parse(test::secondTask));
}

} // namespace
} // namespace selvane
