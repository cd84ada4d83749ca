#include "Support/ModelHarness.h"
#include "Support/TaskFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppModelTimer : public testing::Test {
protected:
    AppModel& launch() {
        harness.launch();
        harness.scheduler.turn();
        harness.journal.clear();
        return harness.model();
    }

    /// What was noted since, without the sync that every event queues.
    const std::vector<std::string>& noted() { return harness.journal.entries(); }

    static UUID id(const std::string& text) { return *UUID::parse(text); }

    test::ModelHarness harness;
};

// Started

TEST_F(AppModelTimer, StartOfFocusSchedulesTheEndAndStartsGuardAndMusic) {
    launch().engine().start();
    EXPECT_THAT(noted(),
                ElementsAre("notifications.remove selvane.phase-end",
                            "notifications.postLater Focus complete in 1500 s",
                            "activity.begin Selvane timer is running", "guard.started", "music.play"));
}

TEST_F(AppModelTimer, StartOfABreakPausesTheMusic) {
    launch().engine().select(Phase::shortBreak);
    harness.journal.clear();
    harness.model().engine().start();
    EXPECT_THAT(noted(), ElementsAre("notifications.remove selvane.phase-end",
                                     "notifications.postLater Break's over in 300 s",
                                     "activity.begin Selvane timer is running", "music.pause"));
}

TEST_F(AppModelTimer, StartWithEverythingOffOnlyTakesTheActivity) {
    AppSettings& settings = launch().settings();
    settings.notificationsEnabled.set(false);
    settings.autoPlayMusic.set(false);
    settings.pauseMusicOnBreaks.set(false);
    harness.journal.clear();
    harness.model().engine().start();
    EXPECT_THAT(noted(), ElementsAre("activity.begin Selvane timer is running", "guard.started"));
}

TEST_F(AppModelTimer, ResumeSchedulesTheEndAnewAndStartsOverAgain) {
    AppModel& model = launch();
    model.engine().start();
    harness.pass(Seconds{100});
    model.engine().pause();
    harness.pass(Seconds{50});
    harness.journal.clear();
    model.engine().resume();
    EXPECT_THAT(noted(),
                ElementsAre("notifications.remove selvane.phase-end",
                            "notifications.postLater Focus complete in 1400 s",
                            "activity.begin Selvane timer is running", "guard.started", "music.play"));
}

TEST_F(AppModelTimer, WarnsOfAMeetingThatBeginsBeforeTheEnd) {
    AppModel& model = launch();
    model.settings().calendarEnabled.set(true);
    harness.answers.nextEvent = CalendarEvent{"Review", adding(Seconds{1499}, harness.now)};
    model.engine().start();
    EXPECT_TRUE(harness.journal.has("notifications.postLater Review in 2 min in 1379 s"));
}

TEST_F(AppModelTimer, WarnsOfNoMeetingAtTheEndOrLater) {
    AppModel& model = launch();
    model.settings().calendarEnabled.set(true);
    harness.answers.nextEvent = CalendarEvent{"Review", adding(Seconds{1500}, harness.now)};
    model.engine().start();
    EXPECT_FALSE(harness.journal.has("notifications.remove selvane.meeting"));
}

TEST_F(AppModelTimer, WarnsOfNoMeetingWithTheCalendarOff) {
    harness.answers.nextEvent = CalendarEvent{"Review", adding(Seconds{60}, harness.now)};
    launch().engine().start();
    EXPECT_FALSE(harness.journal.has("notifications.remove selvane.meeting"));
}

// Paused

TEST_F(AppModelTimer, PauseDropsBothNoticesEndsTheActivityAndPausesGuardAndMusic) {
    launch().engine().start();
    harness.journal.clear();
    harness.model().engine().pause();
    EXPECT_THAT(noted(),
                ElementsAre("notifications.remove selvane.phase-end", "notifications.remove selvane.meeting",
                            "activity.end", "guard.paused", "music.pause"));
}

TEST_F(AppModelTimer, PauseOfABreakPausesTheMusicByTheSettingThatStartedIt) {
    AppModel& model = launch();
    model.engine().select(Phase::longBreak);
    model.engine().start();
    harness.journal.clear();
    model.engine().pause();
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
    model.settings().autoPlayMusic.set(false);
    model.engine().resume();
    harness.journal.clear();
    model.engine().pause();
    EXPECT_EQ(harness.journal.count("music.pause"), 0);
}

// Finished

TEST_F(AppModelTimer, EndOfFocusIsRecordedCreditedAndCelebrated) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.settings().autoStartBreaks.set(false);
    model.setCurrentTaskID(id(test::firstTask));
    harness.answers.usage = std::vector{AppUsage{"org.editor", "Editor", Seconds{1400}}};
    model.engine().start();
    harness.scheduler.turn();
    harness.journal.clear();
    harness.pass(Seconds{1500.5});

    ASSERT_EQ(model.sessions().size(), 1U);
    const FocusSession& session = model.sessions().front();
    EXPECT_TRUE(session.completed);
    EXPECT_EQ(session.phase, Phase::focus);
    EXPECT_EQ(session.plannedSeconds, Seconds{1500});
    EXPECT_EQ(session.actualSeconds, Seconds{1500});
    EXPECT_EQ(session.start, test::ModelHarness::launchTime);
    EXPECT_EQ(session.end, adding(Seconds{1500}, test::ModelHarness::launchTime));
    EXPECT_EQ(session.taskID, id(test::firstTask));
    EXPECT_EQ(session.apps, harness.answers.usage);
    EXPECT_EQ(model.tasks().items.front().completedPomodoros, 1);
    EXPECT_THAT(noted(), ElementsAre("activity.end", "notifications.deliver selvane.phase-end",
                                     "notifications.remove selvane.meeting", "guard.finish", "sound Glass",
                                     "signal", "music.pause", "focusMode.off"));
}

TEST_F(AppModelTimer, EndOfABreakIsRecordedWithoutTaskAndUsage) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.setCurrentTaskID(id(test::firstTask));
    harness.answers.usage = std::vector{AppUsage{"org.editor", "Editor", Seconds{1}}};
    model.engine().select(Phase::shortBreak);
    model.engine().start();
    harness.scheduler.turn();
    harness.journal.clear();
    harness.pass(Seconds{300.5});

    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_TRUE(model.sessions().front().completed);
    EXPECT_EQ(model.sessions().front().phase, Phase::shortBreak);
    EXPECT_EQ(model.sessions().front().taskID, std::nullopt);
    EXPECT_EQ(model.sessions().front().apps, std::nullopt);
    EXPECT_EQ(model.tasks().items.front().completedPomodoros, 0);
    EXPECT_THAT(noted(),
                ElementsAre("activity.end", "notifications.deliver selvane.phase-end",
                            "notifications.remove selvane.meeting", "sound Hero", "signal", "focusMode.off"));
}

TEST_F(AppModelTimer, CelebratesSilentlyWithTheEndSoundOff) {
    AppModel& model = launch();
    model.settings().playEndSound.set(false);
    model.engine().start();
    harness.pass(Seconds{1501});
    EXPECT_FALSE(harness.journal.has("sound Glass"));
    EXPECT_TRUE(harness.journal.has("signal"));
}

TEST_F(AppModelTimer, TaskTickedOffDuringTheRunIsNotCredited) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.setCurrentTaskID(id(test::firstTask));
    model.engine().start();
    harness.pass(Seconds{600});
    model.toggleTask(id(test::firstTask));
    harness.pass(Seconds{901});
    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_EQ(model.sessions().front().taskID, std::nullopt);
    EXPECT_EQ(model.tasks().items.front().completedPomodoros, 0);
}

TEST_F(AppModelTimer, CelebratesWhenTaskAndSessionAreOnDisk) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.setCurrentTaskID(id(test::firstTask));
    std::string order;
    std::string history;
    const auto tasks = model.tasksChanged.subscribe([&](TaskChange) { order += "tasks "; });
    const auto sessions = model.sessionsChanged.subscribe([&] { order += "sessions "; });
    harness.answers.onSound = [&] {
        order += "sound";
        history = harness.folder.read("Selvane/sessions.json");
    };
    model.engine().start();
    harness.pass(Seconds{1501});
    EXPECT_EQ(order, "tasks sessions sound");
    EXPECT_THAT(history, testing::HasSubstr("\"completed\" : true"));
}

TEST_F(AppModelTimer, CurrentTaskThatNoLongerExistsIsNotCredited) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.setCurrentTaskID(id(test::secondTask));
    EXPECT_EQ(model.currentTask(), nullptr);
    model.engine().start();
    harness.pass(Seconds{1501});
    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_EQ(model.sessions().front().taskID, std::nullopt);
}

TEST_F(AppModelTimer, FocusThatRanOutDuringSleepIsRecordedAtItsScheduledEndAtTheWake) {
    AppModel& model = launch();
    model.settings().autoStartBreaks.set(false);
    model.engine().start();
    harness.sleep(std::chrono::hours{3});
    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_EQ(model.sessions().front().end, adding(Seconds{1500}, test::ModelHarness::launchTime));
    EXPECT_EQ(model.sessions().front().actualSeconds, Seconds{1500});
    EXPECT_EQ(harness.journal.count("sound Glass"), 1);
    harness.pass(Seconds{2});
    EXPECT_EQ(model.sessions().size(), 1U);
}

TEST_F(AppModelTimer, SleepThatEndsEarlierOnlyShortensTheCountdown) {
    AppModel& model = launch();
    model.engine().start();
    harness.sleep(Seconds{600});
    EXPECT_TRUE(model.engine().isRunning());
    EXPECT_EQ(model.engine().remaining(), Seconds{900});
}

TEST_F(AppModelTimer, BreakThatStartsByItselfPausesTheMusicTwice) {
    AppModel& model = launch();
    model.engine().start();
    harness.journal.clear();
    harness.pass(Seconds{1500.5});
    EXPECT_TRUE(model.engine().isRunning());
    EXPECT_EQ(model.engine().phase(), Phase::shortBreak);
    EXPECT_EQ(harness.journal.count("music.pause"), 2);
}

TEST_F(AppModelTimer, EventsOfOneCommandYieldOneFocusModeSync) {
    AppModel& model = launch();
    model.engine().start();
    harness.scheduler.turn();
    EXPECT_EQ(harness.journal.count("focusMode.on"), 1);
    harness.journal.clear();
    harness.pass(Seconds{1500});
    harness.scheduler.turn();
    EXPECT_EQ(harness.journal.count("focusMode.off"), 1) << "finished, changed and started";
    EXPECT_EQ(harness.journal.count("focusMode.on"), 0);
}

TEST_F(AppModelTimer, FocusModeIsOnOnlyWhileTimeRuns) {
    AppModel& model = launch();
    const auto state = [&] {
        harness.scheduler.turn();
        const std::string last = harness.journal.entries().back();
        return last;
    };
    model.engine().start();
    EXPECT_EQ(state(), "focusMode.on");
    model.engine().pause();
    EXPECT_EQ(state(), "focusMode.off");
    model.engine().resume();
    EXPECT_EQ(state(), "focusMode.on");
    model.settings().keepFocusModeDuringBreaks.set(true);
    model.engine().skip();
    EXPECT_EQ(state(), "focusMode.on") << "the break runs";
    model.engine().reset();
    EXPECT_EQ(state(), "focusMode.off") << "the break waits";
}

// Interrupted

struct InterruptionCase {
    const char* name;
    Phase phase;
    Seconds run;
    bool isKept;
};

class Interruption : public testing::TestWithParam<InterruptionCase> {};

TEST_P(Interruption, IsKeptFromAMinuteOfFocusOn) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    model.engine().select(GetParam().phase);
    model.engine().start();
    harness.now = adding(GetParam().run, harness.now);
    model.engine().reset();
    EXPECT_EQ(model.sessions().size(), GetParam().isKept ? 1U : 0U);
    EXPECT_EQ(harness.folder.read("Selvane/sessions.json").empty(), !GetParam().isKept);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Interruption,
    testing::Values(InterruptionCase{"FocusBelowASecond", Phase::focus, Seconds{0.4}, false},
                    InterruptionCase{"FocusJustBelowAMinute", Phase::focus, Seconds{59.9}, false},
                    InterruptionCase{"FocusOfAMinute", Phase::focus, Seconds{60.0}, true},
                    InterruptionCase{"FocusOfTwentyMinutes", Phase::focus, Seconds{1200}, true},
                    InterruptionCase{"ShortBreak", Phase::shortBreak, Seconds{120}, false},
                    InterruptionCase{"LongBreak", Phase::longBreak, Seconds{600}, false}),
    [](const auto& row) { return row.param.name; });

TEST_F(AppModelTimer, ResetAfterAMinuteRecordsASessionThatIsNotCompleted) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    AppModel& model = launch();
    model.setCurrentTaskID(id(test::firstTask));
    harness.answers.usage = std::vector{AppUsage{"org.editor", "Editor", Seconds{59}}};
    model.engine().start();
    harness.pass(Seconds{60});
    harness.journal.clear();
    model.engine().reset();
    ASSERT_EQ(model.sessions().size(), 1U);
    const FocusSession& session = model.sessions().front();
    EXPECT_FALSE(session.completed);
    EXPECT_EQ(session.plannedSeconds, Seconds{1500});
    EXPECT_EQ(session.actualSeconds, Seconds{60});
    EXPECT_EQ(session.taskID, id(test::firstTask));
    EXPECT_EQ(session.apps, harness.answers.usage);
    EXPECT_EQ(model.tasks().items.front().completedPomodoros, 0);
    EXPECT_THAT(noted(), ElementsAre("notifications.remove selvane.phase-end",
                                     "notifications.remove selvane.meeting", "activity.end", "guard.finish"));
}

TEST_F(AppModelTimer, TimeInPauseDoesNotCountTowardsTheMinute) {
    AppModel& model = launch();
    model.engine().start();
    harness.pass(Seconds{59});
    model.engine().pause();
    harness.pass(Seconds{600});
    model.engine().resume();
    harness.pass(Seconds{0.5});
    model.engine().reset();
    EXPECT_THAT(model.sessions(), IsEmpty());
}

TEST_F(AppModelTimer, ResetWithoutCurrentTaskRecordsNoTask) {
    AppModel& model = launch();
    model.engine().start();
    harness.pass(Seconds{61});
    model.engine().reset();
    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_EQ(model.sessions().front().taskID, std::nullopt);
}

TEST_F(AppModelTimer, GuardFinishesForAnInterruptedBreakToo) {
    AppModel& model = launch();
    model.engine().select(Phase::shortBreak);
    model.engine().start();
    harness.journal.clear();
    model.engine().reset();
    EXPECT_THAT(noted(), ElementsAre("notifications.remove selvane.phase-end",
                                     "notifications.remove selvane.meeting", "activity.end", "guard.finish"));
}

TEST_F(AppModelTimer, MusicPlaysOnThroughAReset) {
    AppModel& model = launch();
    model.engine().start();
    harness.journal.clear();
    model.engine().reset();
    EXPECT_FALSE(harness.journal.has("music.pause"));
}

TEST_F(AppModelTimer, ChangeToABreakPausesTheMusicAndAChangeToFocusDoesNothing) {
    AppModel& model = launch();
    model.engine().select(Phase::longBreak);
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
    model.engine().select(Phase::focus);
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
}

TEST_F(AppModelTimer, ShortenedSessionIsToldFromAFullOne) {
    AppModel& model = launch();
    EXPECT_FALSE(model.sessionWasShortened());
    model.engine().adjustDuration = [](Phase, Seconds) { return Seconds{1498.9}; };
    model.engine().start();
    EXPECT_TRUE(model.sessionWasShortened());
    model.engine().reset();
    EXPECT_FALSE(model.sessionWasShortened());
    model.engine().adjustDuration = [](Phase, Seconds) { return Seconds{1499}; };
    model.engine().start();
    EXPECT_FALSE(model.sessionWasShortened()) << "a second less counts as whole";
}

// The ticker

TEST_F(AppModelTimer, TickerSleepsWhileNothingRuns) {
    AppModel& model = launch();
    EXPECT_EQ(harness.scheduler.waiting(), 0U);
    model.engine().start();
    harness.scheduler.turn();
    EXPECT_EQ(harness.scheduler.waiting(), 1U);
    model.engine().pause();
    harness.scheduler.turn();
    EXPECT_EQ(harness.scheduler.waiting(), 0U);
    model.engine().resume();
    harness.scheduler.turn();
    EXPECT_EQ(harness.scheduler.waiting(), 1U);
}

TEST_F(AppModelTimer, TickMovesTheCountdownOnceASecond) {
    AppModel& model = launch();
    model.engine().start();
    harness.pass(Seconds{3});
    EXPECT_EQ(model.engine().remaining(), Seconds{1497});
}

TEST_F(AppModelTimer, WakeOfTheMachineTicksAndNothingElse) {
    AppModel& model = launch();
    harness.sleep(Seconds{10});
    EXPECT_THAT(noted(), IsEmpty());
    EXPECT_TRUE(model.engine().isIdle());
}

// Settings

TEST_F(AppModelTimer, TurningNotificationsOnAsksForTheRightToShowThem) {
    AppModel& model = launch();
    model.settings().notificationsEnabled.set(false);
    EXPECT_FALSE(harness.journal.has("notifications.authorize"));
    model.settings().notificationsEnabled.set(true);
    EXPECT_EQ(harness.journal.count("notifications.authorize"), 1);
}

TEST_F(AppModelTimer, GuardThatNudgesMayNeedToSpeak) {
    AppModel& model = launch();
    model.settings().focusGuardMode.set(FocusGuardMode::off);
    EXPECT_THAT(noted(), ElementsAre("guard.settings"));
    model.settings().focusGuardMode.set(FocusGuardMode::nudge);
    EXPECT_THAT(noted(), ElementsAre("guard.settings", "guard.settings", "notifications.authorize"));
}

} // namespace
} // namespace selvane
