#include "SelvaneCore/TimerEngine.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace selvane {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

const Date morning = test::utc(2026, 3, 5, 9);

std::string name(const TimerEngine& engine) {
    return engine.isIdle() ? "idle" : engine.isRunning() ? "running" : "paused";
}

/// An event and the state that the listener finds, as in "finished focus: idle focus".
std::string describe(const TimerEvent& event, const TimerEngine& engine) {
    struct Words {
        std::string operator()(const TimerEvents::Started& it) const { return "started " + text(it.phase); }
        std::string operator()(const TimerEvents::Paused& it) const { return "paused " + text(it.phase); }
        std::string operator()(const TimerEvents::Finished& it) const {
            return "finished " + text(it.session.phase);
        }
        std::string operator()(const TimerEvents::Interrupted& it) const {
            return "interrupted " + (it.session ? text(it.session->phase) : "nothing");
        }
        std::string operator()(const TimerEvents::PhaseChanged& it) const {
            return "changed " + text(it.phase);
        }
        static std::string text(Phase phase) { return std::string(rawValue(phase)); }
    };
    return std::visit(Words{}, event) + ": " + name(engine) + ' ' + std::string(rawValue(engine.phase()));
}

using Log = std::vector<std::string>;

/// An engine with a clock and a configuration that the test moves, and everything that it says.
struct Bench {
    Date time = morning;
    TimerConfig config{25.0, 5.0, 15.0, 4, false, false};
    TimerEngine engine{[this] { return config; }, [this] { return time; }};
    std::vector<TimerEvent> events;
    Log log;
    int changes = 0;
    /// What a listener does besides taking notes.
    std::function<void(const TimerEvent&)> reaction;
    Subscription observer = engine.changed.subscribe([this] { ++changes; });

    Bench() {
        engine.onEvent = [this](const TimerEvent& event) {
            events.push_back(event);
            log.push_back(describe(event, engine));
            if (reaction)
                reaction(event);
        };
    }

    void pass(Seconds length) { time = adding(length, time); }

    void forget() {
        events.clear();
        log.clear();
        changes = 0;
    }

    /// Lets the running phase run out.
    void finish() {
        time = std::get<TimerEngine::Running>(engine.status()).end;
        engine.tick();
    }

    void completeFocusSessions(int count) {
        for (int i = 0; i < count; ++i) {
            engine.select(Phase::focus);
            engine.start();
            finish();
        }
        engine.select(Phase::focus);
    }

    [[nodiscard]] FocusSession finished(std::size_t index) const {
        return std::get<TimerEvents::Finished>(events.at(index)).session;
    }
    [[nodiscard]] std::optional<FocusSession> interrupted(std::size_t index) const {
        return std::get<TimerEvents::Interrupted>(events.at(index)).session;
    }
};

class Timer : public testing::Test, public Bench {};

// The table of transitions.

enum class From { idle, running, paused };
enum class Command {
    start,
    pause,
    resume,
    toggle,
    reset,
    skip,
    selectOther,
    selectSame,
    tickEarly,
    tickAtEnd
};

struct TransitionRow {
    const char* name;
    From from;
    Command command;
    bool autoStart;
    const char* to;
    Log events;
};

void bring(Bench& bench, From from) {
    if (from == From::idle)
        return;
    bench.engine.start();
    if (from == From::paused) {
        bench.pass(Seconds{60});
        bench.engine.pause();
    }
}

void give(Bench& bench, Command command) {
    switch (command) {
    case Command::start:
        return bench.engine.start();
    case Command::pause:
        return bench.engine.pause();
    case Command::resume:
        return bench.engine.resume();
    case Command::toggle:
        return bench.engine.toggle();
    case Command::reset:
        return bench.engine.reset();
    case Command::skip:
        return bench.engine.skip();
    case Command::selectOther:
        return bench.engine.select(Phase::longBreak);
    case Command::selectSame:
        return bench.engine.select(Phase::focus);
    case Command::tickEarly:
        return bench.engine.tick();
    case Command::tickAtEnd:
        bench.time = morning + seconds{1500};
        return bench.engine.tick();
    }
}

class TimerTransitions : public testing::TestWithParam<TransitionRow> {};

TEST_P(TimerTransitions, GoWithTheirEventsInOrder) {
    const TransitionRow& row = GetParam();
    Bench bench;
    bench.config.autoStartBreaks = row.autoStart;
    bring(bench, row.from);
    bench.pass(Seconds{30});
    bench.forget();

    give(bench, row.command);
    EXPECT_EQ(name(bench.engine), row.to);
    EXPECT_EQ(bench.log, row.events);
    EXPECT_EQ(bench.changes > 0, !row.events.empty() || row.name == std::string("runningTickEarly"));
}

INSTANTIATE_TEST_SUITE_P(
    TimerEngine, TimerTransitions,
    testing::Values(
        TransitionRow{
            "idleStart", From::idle, Command::start, false, "running", {"started focus: running focus"}},
        TransitionRow{
            "idleToggle", From::idle, Command::toggle, false, "running", {"started focus: running focus"}},
        TransitionRow{
            "runningPause", From::running, Command::pause, false, "paused", {"paused focus: paused focus"}},
        TransitionRow{
            "runningToggle", From::running, Command::toggle, false, "paused", {"paused focus: paused focus"}},
        TransitionRow{"pausedResume",
                      From::paused,
                      Command::resume,
                      false,
                      "running",
                      {"started focus: running focus"}},
        TransitionRow{"pausedToggle",
                      From::paused,
                      Command::toggle,
                      false,
                      "running",
                      {"started focus: running focus"}},
        TransitionRow{"runningTickAtEnd",
                      From::running,
                      Command::tickAtEnd,
                      false,
                      "idle",
                      {"finished focus: idle focus", "changed shortBreak: idle shortBreak"}},
        TransitionRow{"runningTickAtEndAutoStart",
                      From::running,
                      Command::tickAtEnd,
                      true,
                      "running",
                      {"finished focus: idle focus", "changed shortBreak: idle shortBreak",
                       "started shortBreak: running shortBreak"}},
        TransitionRow{"runningSkip",
                      From::running,
                      Command::skip,
                      false,
                      "idle",
                      {"interrupted focus: idle focus", "changed shortBreak: idle shortBreak"}},
        TransitionRow{"runningSkipAutoStart",
                      From::running,
                      Command::skip,
                      true,
                      "running",
                      {"interrupted focus: idle focus", "changed shortBreak: idle shortBreak",
                       "started shortBreak: running shortBreak"}},
        TransitionRow{"pausedSkip",
                      From::paused,
                      Command::skip,
                      false,
                      "idle",
                      {"interrupted focus: idle focus", "changed shortBreak: idle shortBreak"}},
        TransitionRow{"pausedSkipNeverAutoStarts",
                      From::paused,
                      Command::skip,
                      true,
                      "idle",
                      {"interrupted focus: idle focus", "changed shortBreak: idle shortBreak"}},
        TransitionRow{
            "idleSkip", From::idle, Command::skip, false, "idle", {"changed shortBreak: idle shortBreak"}},
        TransitionRow{"idleSkipNeverAutoStarts",
                      From::idle,
                      Command::skip,
                      true,
                      "idle",
                      {"changed shortBreak: idle shortBreak"}},
        TransitionRow{
            "runningReset", From::running, Command::reset, true, "idle", {"interrupted focus: idle focus"}},
        TransitionRow{
            "pausedReset", From::paused, Command::reset, true, "idle", {"interrupted focus: idle focus"}},
        TransitionRow{"idleSelectOther",
                      From::idle,
                      Command::selectOther,
                      true,
                      "idle",
                      {"changed longBreak: idle longBreak"}},
        TransitionRow{"idlePause", From::idle, Command::pause, true, "idle", {}},
        TransitionRow{"idleResume", From::idle, Command::resume, true, "idle", {}},
        TransitionRow{"idleReset", From::idle, Command::reset, true, "idle", {}},
        TransitionRow{"idleSelectSame", From::idle, Command::selectSame, true, "idle", {}},
        TransitionRow{"idleTick", From::idle, Command::tickAtEnd, true, "idle", {}},
        TransitionRow{"runningStart", From::running, Command::start, true, "running", {}},
        TransitionRow{"runningResume", From::running, Command::resume, true, "running", {}},
        TransitionRow{"runningSelectOther", From::running, Command::selectOther, true, "running", {}},
        TransitionRow{"runningSelectSame", From::running, Command::selectSame, true, "running", {}},
        TransitionRow{"runningTickEarly", From::running, Command::tickEarly, true, "running", {}},
        TransitionRow{"pausedStart", From::paused, Command::start, true, "paused", {}},
        TransitionRow{"pausedPause", From::paused, Command::pause, true, "paused", {}},
        TransitionRow{"pausedSelectOther", From::paused, Command::selectOther, true, "paused", {}},
        TransitionRow{"pausedSelectSame", From::paused, Command::selectSame, true, "paused", {}},
        TransitionRow{"pausedTick", From::paused, Command::tickAtEnd, true, "paused", {}}),
    [](const auto& test) { return std::string(test.param.name); });

// Construction and what is read from the engine.

TEST_F(Timer, IsBornIdleInFocus) {
    EXPECT_EQ(engine.phase(), Phase::focus);
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Idle{}});
    EXPECT_EQ(engine.completedFocusSessions(), 0);
    EXPECT_EQ(engine.now(), morning);
    EXPECT_EQ(engine.config(), config);
    EXPECT_EQ(engine.currentDuration(), Seconds{1500});
    EXPECT_EQ(engine.remaining(), Seconds{1500});
    EXPECT_EQ(engine.progress(), 0.0);
    EXPECT_EQ(engine.cyclePosition(), 1);
}

TEST(TimerStatus, IsComparedByCaseAndPayload) {
    using Status = TimerEngine::Status;
    EXPECT_EQ(Status{TimerEngine::Running{morning}}, Status{TimerEngine::Running{morning}});
    EXPECT_NE(Status{TimerEngine::Running{morning}}, Status{TimerEngine::Running{morning + seconds{1}}});
    EXPECT_NE(Status{TimerEngine::Paused{Seconds{1}}}, Status{TimerEngine::Paused{Seconds{2}}});
    EXPECT_NE(Status{TimerEngine::Paused{Seconds{1}}}, Status{TimerEngine::Idle{}});
    EXPECT_EQ(TimerEvent{TimerEvents::Paused{Phase::focus}}, TimerEvent{TimerEvents::Paused{Phase::focus}});
    EXPECT_NE(TimerEvent{TimerEvents::Paused{Phase::focus}},
              TimerEvent{TimerEvents::PhaseChanged{Phase::focus}});
    EXPECT_NE(TimerEvent{TimerEvents::Interrupted{}}, TimerEvent{TimerEvents::Interrupted{FocusSession{}}});
}

TEST_F(Timer, StartRunsTowardsAnEndDate) {
    pass(Seconds{5});
    engine.start();
    EXPECT_EQ(engine.now(), morning + seconds{5});
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Running{morning + seconds{1505}}});
    EXPECT_EQ(events.at(0), TimerEvent(TimerEvents::Started{Phase::focus, morning + seconds{1505}}));
    EXPECT_EQ(engine.currentDuration(), Seconds{1500});
}

TEST_F(Timer, RemainingFollowsNowAndNotTheClock) {
    engine.start();
    pass(Seconds{375});
    EXPECT_EQ(engine.remaining(), Seconds{1500});
    engine.tick();
    EXPECT_EQ(engine.remaining(), Seconds{1125});
    EXPECT_EQ(engine.progress(), 0.25);
}

TEST_F(Timer, ProgressIsKeptWithinItsBounds) {
    engine.start();
    time = morning - seconds{600};
    engine.tick();
    EXPECT_EQ(engine.remaining(), Seconds{2100});
    EXPECT_EQ(engine.progress(), 0.0);
    time = morning + seconds{9999};
    engine.pause();
    EXPECT_EQ(engine.remaining(), Seconds{0});
    EXPECT_EQ(engine.progress(), 1.0);
}

TEST_F(Timer, WhileIdleTheConfigurationShowsAtOnce) {
    config.focusMinutes = 50;
    EXPECT_EQ(engine.currentDuration(), Seconds{3000});
    EXPECT_EQ(engine.remaining(), Seconds{3000});
    engine.select(Phase::shortBreak);
    EXPECT_EQ(engine.remaining(), Seconds{300});
}

TEST_F(Timer, AnIdleDisplayDoesNotAskForAnAdjustment) {
    int asked = 0;
    engine.adjustDuration = [&](Phase, Seconds) {
        ++asked;
        return Seconds{60};
    };
    EXPECT_EQ(engine.currentDuration(), Seconds{1500});
    EXPECT_EQ(engine.remaining(), Seconds{1500});
    EXPECT_EQ(asked, 0);
}

TEST_F(Timer, AChangedConfigurationLeavesTheRunAlone) {
    engine.start();
    const TimerEngine::Status before = engine.status();
    config.focusMinutes = 1;
    EXPECT_EQ(engine.currentDuration(), Seconds{1500});
    pass(Seconds{70});
    engine.tick();
    EXPECT_EQ(engine.status(), before);
    engine.reset();
    EXPECT_EQ(engine.currentDuration(), Seconds{60});
}

TEST_F(Timer, TheConfigurationIsNeverBelowASecond) {
    config = TimerConfig{0.0, -5.0, 0.001, 4, false, false};
    for (const Phase phase : allPhases) {
        engine.select(phase);
        EXPECT_EQ(engine.currentDuration(), Seconds{1});
        engine.start();
        EXPECT_EQ(engine.currentDuration(), Seconds{1});
        engine.reset();
    }
}

// Adjustment of the planned length.

TEST_F(Timer, TheAdjustmentIsAskedOnceAStart) {
    std::vector<std::pair<Phase, Seconds>> asked;
    engine.adjustDuration = [&](Phase phase, Seconds length) {
        asked.emplace_back(phase, length);
        return Seconds{600};
    };
    engine.start();
    engine.pause();
    engine.resume();
    engine.tick();
    EXPECT_EQ(asked, (std::vector<std::pair<Phase, Seconds>>{{Phase::focus, Seconds{1500}}}));
    EXPECT_EQ(engine.currentDuration(), Seconds{600});
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Running{morning + seconds{600}}});
}

TEST_F(Timer, TheAdjustmentSeesAtLeastASecond) {
    config.focusMinutes = -1;
    Seconds asked{0};
    engine.adjustDuration = [&](Phase, Seconds length) { return asked = length; };
    engine.start();
    EXPECT_EQ(asked, Seconds{1});
}

TEST_F(Timer, AnAdjustmentBelowASecondYieldsASecond) {
    for (const double length : {0.0, -5.0, 0.5, std::numeric_limits<double>::quiet_NaN()}) {
        engine.adjustDuration = [=](Phase, Seconds) { return Seconds{length}; };
        engine.start();
        EXPECT_EQ(engine.currentDuration(), Seconds{1}) << length;
        EXPECT_EQ(engine.remaining(), Seconds{1}) << length;
        engine.reset();
    }
}

TEST_F(Timer, AnAdjustmentMayLengthen) {
    engine.adjustDuration = [](Phase, Seconds length) { return length * 2; };
    engine.start();
    EXPECT_EQ(engine.currentDuration(), Seconds{3000});
}

TEST_F(Timer, AnEndDateIsAWholeMicrosecond) {
    engine.adjustDuration = [](Phase, Seconds) { return Seconds{1.0000004}; };
    engine.start();
    EXPECT_EQ(engine.currentDuration(), Seconds{1.0000004});
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Running{morning + seconds{1}}});
}

TEST_F(Timer, AnAutoStartedPhaseIsAdjustedToo) {
    config.autoStartBreaks = true;
    engine.adjustDuration = [](Phase phase, Seconds length) {
        return phase == Phase::focus ? length : Seconds{7};
    };
    engine.start();
    finish();
    EXPECT_EQ(engine.phase(), Phase::shortBreak);
    EXPECT_EQ(engine.currentDuration(), Seconds{7});
}

// Pausing.

TEST_F(Timer, APauseStopsTheCountdown) {
    engine.start();
    pass(Seconds{100});
    engine.pause();
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Paused{Seconds{1400}}});
    pass(Seconds{5000});
    engine.tick();
    EXPECT_EQ(engine.now(), morning + seconds{100});
    engine.resume();
    EXPECT_EQ(engine.remaining(), Seconds{1400});
    EXPECT_EQ(events.back(), TimerEvent(TimerEvents::Started{Phase::focus, morning + seconds{6500}}));
}

TEST_F(Timer, APausePastTheEndLeavesNothing) {
    for (const double late : {0.0, 10.0}) {
        engine.select(Phase::focus);
        engine.start();
        pass(Seconds{1500 + late});
        engine.pause();
        EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Paused{Seconds{0}}});
        engine.resume();
        EXPECT_TRUE(engine.isRunning());
        forget();
        engine.tick();
        EXPECT_EQ(log, (Log{"finished focus: idle focus", "changed shortBreak: idle shortBreak"}));
    }
}

TEST_F(Timer, APauseAfterTheClockWasSetBackMayLeaveMoreThanPlanned) {
    engine.start();
    time = morning - seconds{60};
    engine.pause();
    EXPECT_EQ(engine.remaining(), Seconds{1560});
}

// Running out.

TEST_F(Timer, TheEndItselfCompletes) {
    engine.start();
    time = morning + seconds{1500} - microseconds{1};
    engine.tick();
    EXPECT_TRUE(engine.isRunning());
    time += microseconds{1};
    engine.tick();
    EXPECT_TRUE(engine.isIdle());
}

TEST_F(Timer, AFinishedSessionTellsWhatWasPlanned) {
    pass(Seconds{3});
    engine.start();
    finish();
    const FocusSession session = finished(1);
    EXPECT_EQ(session, (FocusSession{session.id, morning + seconds{3}, morning + seconds{1503}, Phase::focus,
                                     Seconds{1500}, Seconds{1500}, true, std::nullopt, std::nullopt}));
    EXPECT_NE(session.id, UUID());
}

TEST_F(Timer, ASleepPastTheEndEndsAtTheScheduledEnd) {
    engine.start();
    pass(Seconds{86400});
    engine.tick();
    EXPECT_EQ(finished(1).end, morning + seconds{1500});
    EXPECT_EQ(finished(1).actualSeconds, finished(1).plannedSeconds);
    EXPECT_EQ(engine.now(), morning + seconds{86400});
}

TEST_F(Timer, ASleepThatEndsBeforeTheEndShortensTheCountdown) {
    engine.start();
    pass(Seconds{1000});
    engine.tick();
    EXPECT_EQ(engine.remaining(), Seconds{500});
}

TEST_F(Timer, PausesLieInsideTheSession) {
    engine.start();
    pass(Seconds{100});
    engine.pause();
    pass(Seconds{50});
    engine.resume();
    forget();
    finish();
    EXPECT_EQ(finished(0).start, morning);
    EXPECT_EQ(finished(0).end, morning + seconds{1550});
    EXPECT_EQ(finished(0).actualSeconds, Seconds{1500});
}

TEST_F(Timer, ABreakProducesASessionToo) {
    engine.select(Phase::longBreak);
    engine.start();
    forget();
    finish();
    EXPECT_EQ(finished(0).phase, Phase::longBreak);
    EXPECT_EQ(finished(0).plannedSeconds, Seconds{900});
    EXPECT_EQ(log, (Log{"finished longBreak: idle longBreak", "changed focus: idle focus"}));
    EXPECT_EQ(engine.completedFocusSessions(), 0);
}

TEST_F(Timer, EverySessionHasItsOwnId) {
    engine.start();
    finish();
    engine.start();
    finish();
    EXPECT_NE(finished(1).id, finished(4).id);
}

TEST_F(Timer, ABreakStartsTheFocusOnlyIfToldTo) {
    for (const bool autoStart : {false, true}) {
        config.autoStartFocus = autoStart;
        engine.select(Phase::shortBreak);
        engine.start();
        finish();
        EXPECT_EQ(engine.phase(), Phase::focus);
        EXPECT_EQ(engine.isRunning(), autoStart);
    }
}

TEST_F(Timer, EachAutoStartHasItsOwnFlag) {
    config.autoStartFocus = true;
    engine.start();
    finish();
    EXPECT_TRUE(engine.isIdle());
    config = TimerConfig{25.0, 5.0, 15.0, 4, true, false};
    engine.start();
    finish();
    EXPECT_EQ(engine.phase(), Phase::focus);
    EXPECT_TRUE(engine.isIdle());
}

TEST_F(Timer, ALateTickStartsTheNextPhaseFromThePresent) {
    config.autoStartBreaks = true;
    engine.start();
    pass(Seconds{5000});
    engine.tick();
    EXPECT_EQ(engine.status(), TimerEngine::Status{TimerEngine::Running{morning + seconds{5300}}});
}

// Stopping by hand.

TEST_F(Timer, AResetWithinTheFirstSecondHasNoSession) {
    engine.start();
    time += milliseconds{400};
    engine.reset();
    EXPECT_EQ(events.at(1), TimerEvent(TimerEvents::Interrupted{std::nullopt}));
    EXPECT_EQ(engine.now(), morning + milliseconds{400});
}

TEST_F(Timer, ASessionNeedsAWholeSecond) {
    engine.start();
    time += seconds{1} - microseconds{1};
    engine.reset();
    EXPECT_EQ(interrupted(1), std::nullopt);
    engine.start();
    time += seconds{1};
    engine.reset();
    ASSERT_TRUE(interrupted(3));
    EXPECT_EQ(interrupted(3)->actualSeconds, Seconds{1});
}

TEST_F(Timer, AnInterruptedSessionTellsTheTimeThatRan) {
    engine.start();
    pass(Seconds{100});
    engine.pause();
    pass(Seconds{50});
    engine.resume();
    pass(Seconds{20});
    engine.pause();
    pass(Seconds{30});
    forget();
    engine.reset();
    ASSERT_TRUE(interrupted(0));
    const FocusSession session = *interrupted(0);
    EXPECT_EQ(session, (FocusSession{session.id, morning, morning + seconds{200}, Phase::focus, Seconds{1500},
                                     Seconds{120}, false, std::nullopt, std::nullopt}));
    EXPECT_NE(session.id, UUID());
}

TEST_F(Timer, AResetKeepsPhaseAndCount) {
    completeFocusSessions(2);
    config.autoStartBreaks = true;
    engine.start();
    pass(Seconds{30});
    engine.reset();
    EXPECT_EQ(engine.completedFocusSessions(), 2);
    EXPECT_EQ(engine.phase(), Phase::focus);
    EXPECT_TRUE(engine.isIdle());
    EXPECT_EQ(engine.remaining(), Seconds{1500});
}

TEST_F(Timer, AResetAfterTheClockWasSetBackHasNoSession) {
    engine.start();
    time = morning - seconds{3600};
    engine.reset();
    EXPECT_EQ(interrupted(1), std::nullopt);
}

TEST_F(Timer, AResetPastTheEndTellsNoMoreThanThePlan) {
    engine.start();
    pass(Seconds{4000});
    engine.reset();
    ASSERT_TRUE(interrupted(1));
    EXPECT_EQ(interrupted(1)->actualSeconds, Seconds{1500});
    EXPECT_EQ(interrupted(1)->end, morning + seconds{4000});
    EXPECT_FALSE(interrupted(1)->completed);
}

TEST_F(Timer, ASkipWithinTheFirstSecondStillMovesOn) {
    config.autoStartBreaks = true;
    engine.start();
    time += milliseconds{999};
    forget();
    engine.skip();
    EXPECT_EQ(log, (Log{"interrupted nothing: idle focus", "changed shortBreak: idle shortBreak",
                        "started shortBreak: running shortBreak"}));
}

TEST_F(Timer, ASkipFromIdleDoesNotReadTheClock) {
    pass(Seconds{10});
    engine.skip();
    EXPECT_EQ(engine.now(), morning);
}

TEST_F(Timer, ASkippedBreakLeadsToFocusAndCountsNothing) {
    for (const Phase phase : {Phase::shortBreak, Phase::longBreak}) {
        engine.select(phase);
        engine.start();
        pass(Seconds{30});
        engine.skip();
        EXPECT_EQ(engine.phase(), Phase::focus);
        EXPECT_EQ(engine.completedFocusSessions(), 0);
    }
}

TEST_F(Timer, ASkippedBreakMayStartTheFocus) {
    config.autoStartFocus = true;
    engine.select(Phase::shortBreak);
    engine.start();
    engine.skip();
    EXPECT_EQ(engine.phase(), Phase::focus);
    EXPECT_TRUE(engine.isRunning());
}

// The long break.

enum class Ending { runsOut, skipRunning, skipPaused, skipIdle, reset, select };

struct LongBreakRow {
    const char* name;
    int sessionsBeforeLongBreak;
    int completedBefore;
    Ending ending;
    int completedAfter;
    Phase next;
    int cyclePosition;
    const char* recorded;
};

class TimerLongBreak : public testing::TestWithParam<LongBreakRow> {};

TEST_P(TimerLongBreak, ComesAfterASetOfFocusSessions) {
    const LongBreakRow& row = GetParam();
    Bench bench;
    bench.completeFocusSessions(row.completedBefore);
    bench.config.sessionsBeforeLongBreak = row.sessionsBeforeLongBreak;
    ASSERT_EQ(bench.engine.phase(), Phase::focus);
    ASSERT_EQ(bench.engine.completedFocusSessions(), row.completedBefore);

    if (row.ending != Ending::skipIdle && row.ending != Ending::select)
        bench.engine.start();
    bench.pass(Seconds{60});
    if (row.ending == Ending::skipPaused)
        bench.engine.pause();
    bench.forget();
    switch (row.ending) {
    case Ending::runsOut:
        bench.finish();
        break;
    case Ending::skipRunning:
    case Ending::skipPaused:
    case Ending::skipIdle:
        bench.engine.skip();
        break;
    case Ending::reset:
        bench.engine.reset();
        break;
    case Ending::select:
        bench.engine.select(row.next);
        break;
    }
    EXPECT_EQ(bench.engine.completedFocusSessions(), row.completedAfter);
    EXPECT_EQ(bench.engine.phase(), row.next);
    EXPECT_EQ(bench.engine.cyclePosition(), row.cyclePosition);
    EXPECT_EQ(bench.log.at(0).substr(0, bench.log.at(0).find(' ')), row.recorded);
}

INSTANTIATE_TEST_SUITE_P(
    TimerEngine, TimerLongBreak,
    testing::Values(
        LongBreakRow{"firstRunsOut", 4, 0, Ending::runsOut, 1, Phase::shortBreak, 2, "finished"},
        LongBreakRow{"thirdRunsOut", 4, 2, Ending::runsOut, 3, Phase::shortBreak, 4, "finished"},
        LongBreakRow{"fourthRunsOut", 4, 3, Ending::runsOut, 4, Phase::longBreak, 1, "finished"},
        LongBreakRow{"fifthRunsOut", 4, 4, Ending::runsOut, 5, Phase::shortBreak, 2, "finished"},
        LongBreakRow{"eighthRunsOut", 4, 7, Ending::runsOut, 8, Phase::longBreak, 1, "finished"},
        LongBreakRow{"firstSkipped", 4, 0, Ending::skipRunning, 0, Phase::shortBreak, 1, "interrupted"},
        LongBreakRow{"fourthSkippedRunning", 4, 3, Ending::skipRunning, 3, Phase::longBreak, 4,
                     "interrupted"},
        LongBreakRow{"fourthSkippedPaused", 4, 3, Ending::skipPaused, 3, Phase::longBreak, 4, "interrupted"},
        LongBreakRow{"fourthSkippedIdle", 4, 3, Ending::skipIdle, 3, Phase::longBreak, 4, "changed"},
        LongBreakRow{"fifthSkipped", 4, 4, Ending::skipRunning, 4, Phase::shortBreak, 1, "interrupted"},
        LongBreakRow{"fourthReset", 4, 3, Ending::reset, 3, Phase::focus, 4, "interrupted"},
        LongBreakRow{"fourthSelected", 4, 3, Ending::select, 3, Phase::shortBreak, 4, "changed"},
        LongBreakRow{"everyOneRunsOut", 1, 0, Ending::runsOut, 1, Phase::longBreak, 1, "finished"},
        LongBreakRow{"everySecondOneRunsOut", 1, 1, Ending::runsOut, 2, Phase::longBreak, 1, "finished"},
        LongBreakRow{"zeroIsOne", 0, 0, Ending::runsOut, 1, Phase::longBreak, 1, "finished"},
        LongBreakRow{"negativeIsOne", -3, 1, Ending::runsOut, 2, Phase::longBreak, 1, "finished"},
        LongBreakRow{"zeroSkipped", 0, 2, Ending::skipRunning, 2, Phase::longBreak, 1, "interrupted"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(Timer, ASkippedLastSessionOfASetComesRoundAgain) {
    completeFocusSessions(3);
    engine.start();
    engine.skip();
    EXPECT_EQ(engine.phase(), Phase::longBreak);
    engine.start();
    finish();
    EXPECT_EQ(engine.phase(), Phase::focus);
    EXPECT_EQ(engine.cyclePosition(), 4);
    engine.start();
    finish();
    EXPECT_EQ(engine.phase(), Phase::longBreak);
}

TEST_F(Timer, AChangedSetTakesEffectAtTheNextAdvance) {
    completeFocusSessions(1);
    engine.start();
    config.sessionsBeforeLongBreak = 2;
    finish();
    EXPECT_EQ(engine.phase(), Phase::longBreak);
    EXPECT_EQ(engine.completedFocusSessions(), 2);
}

// Observers and listeners.

TEST_F(Timer, ObserversAreToldOnceACommand) {
    config.autoStartBreaks = true;
    engine.start();
    EXPECT_EQ(changes, 1);
    finish();
    EXPECT_EQ(log.size(), 4U);
    EXPECT_EQ(changes, 2);
}

TEST_F(Timer, ObserversAreToldOnlyOfARealChange) {
    engine.start();
    forget();
    engine.tick();
    engine.start();
    engine.resume();
    engine.select(Phase::longBreak);
    EXPECT_EQ(changes, 0);
    pass(Seconds{1});
    engine.tick();
    EXPECT_EQ(changes, 1);
    engine.tick();
    EXPECT_EQ(changes, 1);
}

TEST_F(Timer, ObserversHearNothingWhereTheStateCameBack) {
    reaction = [this](const TimerEvent& event) {
        if (std::holds_alternative<TimerEvents::Started>(event))
            engine.reset();
    };
    engine.start();
    EXPECT_EQ(log, (Log{"started focus: running focus", "interrupted nothing: idle focus"}));
    EXPECT_TRUE(engine.isIdle());
    EXPECT_EQ(changes, 0);
}

TEST_F(Timer, ObserversFindAConsistentStateAndMayGiveCommands) {
    int heard = 0;
    const Subscription subscription = engine.changed.subscribe([&] {
        if (++heard == 1)
            engine.pause();
    });
    engine.start();
    EXPECT_TRUE(engine.isPaused());
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(engine.currentDuration(), Seconds{1500});
}

TEST_F(Timer, WithoutAListenerTheCycleGoesOn) {
    engine.onEvent = nullptr;
    config.autoStartBreaks = true;
    engine.start();
    finish();
    engine.skip();
    EXPECT_EQ(engine.completedFocusSessions(), 1);
    EXPECT_EQ(engine.phase(), Phase::focus);
}

TEST_F(Timer, AListenerSeesTheLengthOfThePhaseThatEnded) {
    Seconds duration{0};
    config.shortBreakMinutes = 5;
    reaction = [&](const TimerEvent& event) {
        if (std::holds_alternative<TimerEvents::Finished>(event))
            duration = engine.currentDuration();
    };
    engine.start();
    finish();
    // Idle already, with the old phase selected.
    EXPECT_EQ(duration, Seconds{1500});
}

TEST_F(Timer, AListenerMayReplaceItself) {
    engine.onEvent = [this](const TimerEvent&) {
        engine.onEvent = nullptr;
        log.push_back("once");
    };
    engine.start();
    engine.pause();
    EXPECT_EQ(log, (Log{"once"}));
}

TEST_F(Timer, AListenerThatStopsAnAutoStartIsObeyed) {
    config.autoStartBreaks = true;
    reaction = [this](const TimerEvent& event) {
        const auto* const started = std::get_if<TimerEvents::Started>(&event);
        if (started && started->phase == Phase::shortBreak)
            engine.pause();
    };
    engine.start();
    forget();
    finish();
    EXPECT_EQ(log, (Log{"finished focus: idle focus", "changed shortBreak: idle shortBreak",
                        "started shortBreak: running shortBreak", "paused shortBreak: paused shortBreak"}));
    EXPECT_EQ(changes, 1);
}

TEST_F(Timer, AListenerThatStartsTheNextPhaseItselfStartsItOnce) {
    config.autoStartBreaks = true;
    reaction = [this](const TimerEvent& event) {
        if (std::holds_alternative<TimerEvents::PhaseChanged>(event))
            engine.start();
    };
    engine.start();
    forget();
    finish();
    EXPECT_EQ(log, (Log{"finished focus: idle focus", "changed shortBreak: idle shortBreak",
                        "started shortBreak: running shortBreak"}));
}

TEST_F(Timer, AListenerThatResetsAtTheEndChangesNothing) {
    reaction = [this](const TimerEvent& event) {
        if (std::holds_alternative<TimerEvents::Finished>(event)) {
            engine.reset();
            engine.tick();
            engine.pause();
        }
    };
    engine.start();
    forget();
    finish();
    EXPECT_EQ(log, (Log{"finished focus: idle focus", "changed shortBreak: idle shortBreak"}));
}

} // namespace
} // namespace selvane
