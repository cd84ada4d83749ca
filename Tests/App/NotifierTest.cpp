#include "Selvane/App/Notifier.h"

#include "Support/FakeNotificationCenter.h"
#include "Support/ManualScheduler.h"
#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Date morning = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};

class NotifierTest : public testing::Test {
protected:
    [[nodiscard]] Date in(Seconds seconds) const { return adding(seconds, _now); }

    /// What waits under this identifier. Fails if nothing does.
    const PendingRequests::Pending& pending(std::string_view id) {
        static const PendingRequests::Pending none{};
        const auto& all = _center.pending().all();
        const auto found = all.find(id);
        EXPECT_NE(found, all.end()) << "nothing is pending as " << id;
        return found == all.end() ? none : found->second;
    }

    void headsUp(Seconds untilStart, const std::string& title = "Review") {
        _notifier.scheduleMeetingHeadsUp(title, in(untilStart), Seconds{120});
    }

    test::ManualScheduler _scheduler;
    test::FakeNotificationCenter _center{_scheduler};
    Date _now = morning;
    Notifier _notifier{&_center, [this] { return _now; }};
};

// The end of a phase

struct PhaseText {
    const char* name;
    Phase phase;
    const char* title;
    const char* body;
};

void PrintTo(const PhaseText& text, std::ostream* stream) {
    *stream << text.name;
}

class NotifierPhase : public NotifierTest, public testing::WithParamInterface<PhaseText> {};

TEST_P(NotifierPhase, EndIsToldInItsOwnWords) {
    _notifier.schedule(GetParam().phase, in(Seconds{1500}));
    const auto& pending = this->pending("selvane.phase-end");
    EXPECT_EQ(
        pending.request,
        (NotificationRequest{
            .id = "selvane.phase-end", .title = GetParam().title, .body = GetParam().body, .category = ""}));
    EXPECT_EQ(pending.due, Seconds{1500});
}

INSTANTIATE_TEST_SUITE_P(All, NotifierPhase,
                         testing::Values(PhaseText{"Focus", Phase::focus, "Focus complete",
                                                   "Nice work. Time for a break."},
                                         PhaseText{"ShortBreak", Phase::shortBreak, "Break's over",
                                                   "Ready for the next focus session?"},
                                         PhaseText{"LongBreak", Phase::longBreak, "Break's over",
                                                   "Ready for the next focus session?"}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(NotifierTest, EndOfAPhaseIsShownAtItsMomentAndNotBefore) {
    _notifier.schedule(Phase::focus, in(Seconds{1500}));
    _scheduler.advance(Seconds{1499.9});
    EXPECT_THAT(_center.titles, IsEmpty());
    _scheduler.advance(Seconds{0.1});
    EXPECT_THAT(_center.titles, ElementsAre("Focus complete"));
}

TEST_F(NotifierTest, PhaseThatEndsInUnderASecondStillGetsATriggerOfOneSecond) {
    _notifier.schedule(Phase::focus, in(Seconds{0.3}));
    EXPECT_EQ(pending("selvane.phase-end").due, Seconds{1});
    _notifier.schedule(Phase::focus, in(Seconds{-20}));
    EXPECT_EQ(pending("selvane.phase-end").due, Seconds{1});
    _notifier.schedule(Phase::focus, in(Seconds{1.5}));
    EXPECT_EQ(pending("selvane.phase-end").due, Seconds{1.5});
}

TEST_F(NotifierTest, SecondScheduleReplacesTheFirst) {
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    _notifier.schedule(Phase::shortBreak, in(Seconds{20}));
    _scheduler.advance(Seconds{60});
    EXPECT_THAT(_center.titles, ElementsAre("Break's over"));
}

// The heads-up before a meeting

TEST_F(NotifierTest, HeadsUpComesTheLeadBeforeTheStartAndTellsTheLead) {
    headsUp(Seconds{1000});
    const auto& pending = this->pending("selvane.meeting");
    EXPECT_EQ(pending.request, (NotificationRequest{.id = "selvane.meeting",
                                                    .title = "Review in 2 min",
                                                    .body = "Time to wrap up this session.",
                                                    .category = ""}));
    EXPECT_EQ(pending.due, Seconds{880});
}

TEST_F(NotifierTest, HeadsUpForAnEventThatStartsInThirtySecondsReadsIsStartingAfterOneSecond) {
    headsUp(Seconds{30});
    EXPECT_EQ(pending("selvane.meeting").request.title, "Review is starting");
    EXPECT_EQ(pending("selvane.meeting").due, Seconds{1});
}

TEST_F(NotifierTest, HeadsUpTellsTheNearestMinuteWithHalvesToTheEvenOne) {
    const std::vector<std::pair<double, std::string>> rows{
        {-600, "Review is starting"}, {0, "Review is starting"},  {29, "Review is starting"},
        {30, "Review is starting"},   {30.1, "Review in 1 min"},  {60, "Review in 1 min"},
        {89.9, "Review in 1 min"},    {90, "Review in 2 min"},    {119, "Review in 2 min"},
        {121, "Review in 2 min"},     {86'400, "Review in 2 min"}};
    for (const auto& [seconds, title] : rows) {
        headsUp(Seconds{seconds});
        EXPECT_EQ(pending("selvane.meeting").request.title, title) << seconds;
        EXPECT_EQ(pending("selvane.meeting").due, Seconds{std::max(1.0, seconds - 120)}) << seconds;
    }
}

TEST_F(NotifierTest, HeadsUpFollowsTheLeadThatItIsGiven) {
    _notifier.scheduleMeetingHeadsUp("Review", in(Seconds{1000}), Seconds{300});
    EXPECT_EQ(pending("selvane.meeting").request.title, "Review in 5 min");
    EXPECT_EQ(pending("selvane.meeting").due, Seconds{700});
}

TEST_F(NotifierTest, SecondHeadsUpReplacesTheFirst) {
    headsUp(Seconds{300}, "Review");
    headsUp(Seconds{400}, "Lunch");
    _scheduler.advance(Seconds{1000});
    EXPECT_THAT(_center.titles, ElementsAre("Lunch in 2 min"));
}

// A drift

struct DriftText {
    const char* name;
    Notifier::DriftStyle style;
    std::optional<std::string> task;
    const char* title;
    const char* body;
    const char* category;
    std::vector<std::string> buttons;
};

void PrintTo(const DriftText& text, std::ostream* stream) {
    *stream << text.name;
}

class NotifierDrift : public NotifierTest, public testing::WithParamInterface<DriftText> {};

TEST_P(NotifierDrift, IsToldAtOnceInTheWordsAndWithTheButtonsOfItsStyle) {
    _notifier.notifyDrift("Chat", GetParam().task, GetParam().style);
    EXPECT_THAT(_center.shown, ElementsAre(NotificationRequest{.id = "selvane.drift",
                                                               .title = GetParam().title,
                                                               .body = GetParam().body,
                                                               .category = GetParam().category}));
    EXPECT_EQ(_center.buttons(GetParam().category), GetParam().buttons);
    EXPECT_THAT(_center.pending().all(), IsEmpty());
}

using Style = Notifier::DriftStyle;
INSTANTIATE_TEST_SUITE_P(All, NotifierDrift,
                         testing::Values(DriftText{"Nudge",
                                                   Style::nudge,
                                                   "Write the letter",
                                                   "Back to Write the letter?",
                                                   "Chat is on your distractions list.",
                                                   "selvane.drift.nudge",
                                                   {"Hide App", "Allow 5 min"}},
                                         DriftText{"NudgeWithoutATask",
                                                   Style::nudge,
                                                   std::nullopt,
                                                   "Back to focus?",
                                                   "Chat is on your distractions list.",
                                                   "selvane.drift.nudge",
                                                   {"Hide App", "Allow 5 min"}},
                                         // There is nothing to hide any more.
                                         DriftText{"Hidden",
                                                   Style::hidden,
                                                   "Write the letter",
                                                   "Hid Chat",
                                                   "Still focusing on Write the letter.",
                                                   "selvane.drift.hidden",
                                                   {"Allow 5 min"}},
                                         DriftText{"HiddenWithoutATask",
                                                   Style::hidden,
                                                   std::nullopt,
                                                   "Hid Chat",
                                                   "Still in a focus session.",
                                                   "selvane.drift.hidden",
                                                   {"Allow 5 min"}},
                                         // A website is no application that could be hidden.
                                         DriftText{"Site",
                                                   Style::site,
                                                   "Write the letter",
                                                   "Back to Write the letter?",
                                                   "Chat is on your distractions list.",
                                                   "selvane.drift.site",
                                                   {"Allow 5 min"}},
                                         DriftText{"SiteWithoutATask",
                                                   Style::site,
                                                   std::nullopt,
                                                   "Back to focus?",
                                                   "Chat is on your distractions list.",
                                                   "selvane.drift.site",
                                                   {"Allow 5 min"}}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(NotifierTest, SecondDriftReplacesTheFirst) {
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _notifier.notifyDrift("News", std::nullopt, Style::hidden);
    ASSERT_EQ(_center.shown.size(), 1U);
    EXPECT_EQ(_center.shown.front().title, "Hid News");
}

TEST_F(NotifierTest, QuestionMarkIsAddedAlsoToATaskThatEndsWithOne) {
    _notifier.notifyDrift("Chat", "Ready?", Style::nudge);
    EXPECT_EQ(_center.shown.front().title, "Back to Ready??");
}

TEST_F(NotifierTest, TextIsHandedOnAsItStands) {
    _notifier.notifyDrift("<b>Chat</b> & Co", "a < b", Style::hidden);
    EXPECT_EQ(_center.shown.front().title, "Hid <b>Chat</b> & Co");
    EXPECT_EQ(_center.shown.front().body, "Still focusing on a < b.");
}

// Data

TEST_F(NotifierTest, DataNoticeIsShownAtOnceWithTheWordsGivenAndNoButtons) {
    _notifier.notifyDataNotice("Selvane restored your data", "What happened.");
    EXPECT_THAT(_center.shown, ElementsAre(NotificationRequest{.id = "selvane.data",
                                                               .title = "Selvane restored your data",
                                                               .body = "What happened.",
                                                               .category = ""}));
}

TEST_F(NotifierTest, KindsStandBesideEachOther) {
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    headsUp(Seconds{10});
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _notifier.notifyDataNotice("Title", "Body");
    _scheduler.advance(Seconds{10});
    EXPECT_EQ(_center.shown.size(), 4U);
}

// Taking back

TEST_F(NotifierTest, RemovesPendingOnesByTheirIdentifiersAndNoOthers) {
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    headsUp(Seconds{200});
    _notifier.removePending(std::array<std::string_view, 2>{Notifier::phaseEndID, "unknown"});
    _scheduler.advance(Seconds{200});
    EXPECT_THAT(_center.titles, ElementsAre("Review in 2 min"));
}

TEST_F(NotifierTest, RemovesDeliveredOnesByTheirIdentifiersAndNoOthers) {
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _notifier.notifyDataNotice("Title", "Body");
    _notifier.removeDelivered(std::array<std::string_view, 2>{Notifier::driftID, "unknown"});
    ASSERT_EQ(_center.shown.size(), 1U);
    EXPECT_EQ(_center.shown.front().id, "selvane.data");
}

TEST_F(NotifierTest, RemovingPendingOnesLeavesTheScreenAlone) {
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    _scheduler.advance(Seconds{10});
    _notifier.removePending(std::array{Notifier::phaseEndID});
    EXPECT_EQ(_center.shown.size(), 1U);
}

TEST_F(NotifierTest, DeliversWhatIsPendingAndNothingElse) {
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    headsUp(Seconds{200});
    _notifier.deliverPending(Notifier::phaseEndID);
    _notifier.deliverPending(Notifier::phaseEndID);
    _notifier.deliverPending("unknown");
    EXPECT_THAT(_center.titles, ElementsAre("Focus complete"));
    _scheduler.advance(Seconds{20});
    EXPECT_THAT(_center.titles, ElementsAre("Focus complete"));
}

// What the user answers

TEST_F(NotifierTest, HandsTheTwoActionsBack) {
    std::vector<Notifier::Action> chosen;
    _notifier.onAction = [&](Notifier::Action action) { chosen.push_back(action); };
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _center.choose("selvane.drift", "selvane.drift.snooze");
    _center.choose("selvane.drift", "selvane.drift.hide");
    EXPECT_THAT(chosen, ElementsAre(Notifier::Action::snooze, Notifier::Action::hideApp));
}

TEST_F(NotifierTest, IgnoresEveryOtherAnswer) {
    int answers = 0;
    _notifier.onAction = [&](Notifier::Action) { ++answers; };
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    for (const char* answer : {"default", "", "selvane.drift", "selvane.drift.snooze ", "SELVANE.DRIFT.HIDE"})
        _center.choose("selvane.drift", answer);
    EXPECT_EQ(answers, 0);
}

TEST_F(NotifierTest, AnswerThatNobodyWaitsForDoesNothing) {
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _center.choose("selvane.drift", "selvane.drift.snooze");
}

TEST_F(NotifierTest, AnswerAfterItsEndDoesNothing) {
    int answers = 0;
    {
        Notifier notifier(&_center, [this] { return _now; });
        notifier.onAction = [&](Notifier::Action) { ++answers; };
        notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    }
    _center.choose("selvane.drift", "selvane.drift.snooze");
    EXPECT_EQ(answers, 0);
}

// The center

TEST_F(NotifierTest, LeavesTheCenterAloneUntilItIsNeededAndSetsItUpOnce) {
    EXPECT_EQ(_center.timesCategoriesWereSet, 0);
    EXPECT_FALSE(_center.onAction);
    _notifier.requestAuthorization();
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    EXPECT_EQ(_center.timesCategoriesWereSet, 1);
    EXPECT_EQ(_center.authorizationRequests, 1);
    const NotificationAction snooze{"selvane.drift.snooze", "Allow 5 min"};
    const NotificationAction hideApp{"selvane.drift.hide", "Hide App"};
    EXPECT_THAT(_center.categories(),
                ElementsAre(NotificationCategory{"selvane.drift.nudge", {hideApp, snooze}},
                            NotificationCategory{"selvane.drift.hidden", {snooze}},
                            NotificationCategory{"selvane.drift.site", {snooze}}));
}

TEST_F(NotifierTest, UserWhoDeniedItSeesNothingAndTheRestGoesOn) {
    _center.isDenied = true;
    _notifier.requestAuthorization();
    _notifier.schedule(Phase::focus, in(Seconds{10}));
    _notifier.notifyDrift("Chat", std::nullopt, Style::nudge);
    _scheduler.advance(Seconds{10});
    EXPECT_THAT(_center.titles, IsEmpty());
}

TEST(NotifierWithoutACenter, NoOperationHasAnEffect) {
    Notifier notifier(nullptr, [] { return morning; });
    notifier.requestAuthorization();
    notifier.schedule(Phase::focus, adding(Seconds{10}, morning));
    notifier.scheduleMeetingHeadsUp("Review", adding(Seconds{10}, morning), Seconds{120});
    notifier.notifyDrift("Chat", "Task", Style::site);
    notifier.notifyDataNotice("Title", "Body");
    notifier.removePending(std::array{Notifier::phaseEndID});
    notifier.deliverPending(Notifier::phaseEndID);
    notifier.removeDelivered(std::array{Notifier::driftID});
}

// Together with the timer

/// A model whose notifications are shown by a fake desktop.
class NotifierAndTimer : public testing::Test {
protected:
    NotifierAndTimer() {
        harness.adjustServices = [this](AppServices& services) {
            services.makeNotifier = [this] {
                return std::make_unique<Notifier>(&center, [this] { return harness.now; });
            };
        };
    }

    /// The machine sleeps; nothing has run since.
    void sleep(Seconds length) {
        harness.now = adding(length, harness.now);
        harness.scheduler.standStill(length);
    }

    void tellOfWaking() { harness.awayMonitor.didWake.emit(); }

    test::ModelHarness harness;
    test::FakeNotificationCenter center{harness.scheduler};
};

TEST_F(NotifierAndTimer, PhaseThatEndsIsToldOnce) {
    harness.launch().engine().start();
    harness.pass(Seconds{1505});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
}

TEST_F(NotifierAndTimer, EachPhaseOfARowIsToldOnceAndReplacesTheOneBefore) {
    AppModel& model = harness.launch();
    model.settings().autoStartBreaks.set(true);
    model.engine().start();
    harness.pass(Seconds{1505});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
    harness.pass(Seconds{300});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete", "Break's over"));
    EXPECT_EQ(center.shown.size(), 1U);
}

TEST_F(NotifierAndTimer, PauseTakesTheEndBack) {
    AppModel& model = harness.launch();
    model.engine().start();
    harness.pass(Seconds{100});
    model.engine().pause();
    harness.pass(Seconds{5000});
    EXPECT_THAT(center.titles, IsEmpty());
}

TEST_F(NotifierAndTimer, ClockSetForwardInMidPhaseStillTellsTheEndOnce) {
    AppModel& model = harness.launch();
    model.settings().autoStartBreaks.set(true);
    model.engine().start();
    harness.pass(Seconds{600});
    harness.now = adding(Seconds{2.5}, harness.now);
    // The phase ends by the clock on the wall, before its notification falls due by the one that can't be
    // set.
    harness.pass(Seconds{898.2});
    EXPECT_EQ(model.engine().phase(), Phase::shortBreak);
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
    harness.pass(Seconds{5});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
}

TEST_F(NotifierAndTimer, ClockSetBackInMidPhaseTellsTheEndOnceWhenItWasDue) {
    AppModel& model = harness.launch();
    model.settings().autoStartBreaks.set(true);
    model.engine().start();
    harness.pass(Seconds{600});
    harness.now = adding(Seconds{-2.5}, harness.now);
    harness.pass(Seconds{901});
    EXPECT_EQ(model.engine().phase(), Phase::focus) << "the timer follows the clock that was set";
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
    harness.pass(Seconds{9});
    EXPECT_EQ(model.engine().phase(), Phase::shortBreak);
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
}

TEST_F(NotifierAndTimer, EndWhoseNotificationsAreOffIsNotTold) {
    AppModel& model = harness.launch();
    model.settings().notificationsEnabled.set(false);
    model.engine().start();
    harness.pass(Seconds{1505});
    EXPECT_THAT(center.titles, IsEmpty());
}

struct Waking {
    const char* name;
    /// Which the main loop gets to first.
    bool timersFirst;
    bool autoStart;
};

void PrintTo(const Waking& waking, std::ostream* stream) {
    *stream << waking.name;
}

class NotifierAndSleep : public NotifierAndTimer, public testing::WithParamInterface<Waking> {};

TEST_P(NotifierAndSleep, PhaseThatEndsWhileTheMachineSleepsIsToldAndRecordedOnce) {
    AppModel& model = harness.launch();
    model.settings().autoStartBreaks.set(GetParam().autoStart);
    const Date start = harness.now;
    model.engine().start();
    harness.pass(Seconds{600});
    sleep(Seconds{7200});
    if (GetParam().timersFirst)
        harness.scheduler.turn();
    tellOfWaking();
    harness.pass(Seconds{5});

    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
    ASSERT_EQ(model.sessions().size(), 1U);
    EXPECT_EQ(model.sessions().front().end, adding(Seconds{1500}, start));
    EXPECT_TRUE(model.sessions().front().completed);

    // Nor does a second waking tell it again.
    sleep(Seconds{10});
    tellOfWaking();
    harness.pass(Seconds{5});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
    EXPECT_EQ(model.sessions().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(All, NotifierAndSleep,
                         testing::Values(Waking{"TimersFirst", true, false},
                                         Waking{"WakingFirst", false, false},
                                         Waking{"TimersFirstIntoABreak", true, true},
                                         Waking{"WakingFirstIntoABreak", false, true}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(NotifierAndTimer, SleepWithinAPhaseLeavesItsEndWhereItWas) {
    harness.launch().engine().start();
    harness.pass(Seconds{100});
    sleep(Seconds{1000});
    tellOfWaking();
    harness.pass(Seconds{399});
    EXPECT_THAT(center.titles, IsEmpty());
    harness.pass(Seconds{2});
    EXPECT_THAT(center.titles, ElementsAre("Focus complete"));
}

} // namespace
} // namespace selvane
