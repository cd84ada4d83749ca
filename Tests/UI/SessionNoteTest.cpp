#include "Selvane/UI/Popover/SessionNote.h"

#include "Selvane/UI/Popover/SessionNoteModel.h"
#include "Selvane/UI/Symbols/Symbols.h"
#include "Support/LocalTime.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace selvane::SessionNote {

void PrintTo(const Note& note, std::ostream* out) {
    *out << note.symbol.toStdString() << ": " << note.text.toStdString();
}

namespace {

using namespace std::chrono_literals;

constexpr Date now = test::ModelHarness::launchTime;

/// An idle focus phase of 25 minutes, with nothing to tell.
State idle() {
    State state;
    state.now = now;
    state.remaining = state.focusDuration = Seconds{1500};
    state.meetingBuffer = Seconds{120};
    return state;
}

State running(Phase phase = Phase::focus) {
    State state = idle();
    state.phase = phase;
    state.timer = Timer::running;
    return state;
}

State paused(Phase phase = Phase::focus) {
    State state = running(phase);
    state.timer = Timer::paused;
    return state;
}

State withMeetingIn(State state, std::chrono::microseconds time) {
    state.nextEvent = CalendarEvent{"Design review", now + time};
    return state;
}

State withUsage(State state, std::vector<AppUsage> usage) {
    state.lastUsage = std::move(usage);
    return state;
}

State withDistractions(State state, DistractingSet distracting) {
    state.distracting = std::move(distracting);
    return state;
}

/// The note, whose symbol has a drawing.
std::optional<Note> noteOf(const State& state) {
    auto found = note(state, Calendar::utc(), QLocale(QLocale::English, QLocale::UnitedKingdom));
    if (found) {
        const std::string symbol = found->symbol.toStdString();
        EXPECT_TRUE(symbol.empty() || Symbols::contains(symbol)) << symbol;
    }
    return found;
}

/// The note's words; "nothing" without a note.
std::string textOf(const State& state) {
    const auto found = noteOf(state);
    return found ? found->text.toStdString() : "nothing";
}

const AppUsage editor{"org.example.editor", "Editor", Seconds{1200}};
const AppUsage news{"org.example.news", "News", Seconds{300}};
const AppUsage away{std::string(AppUsage::away), "Away", Seconds{600}};

TEST(SessionNote, NothingToTellIsNoNote) {
    for (const State& state : {idle(), running(), paused(), running(Phase::shortBreak)})
        EXPECT_EQ(noteOf(state), std::nullopt);
}

// Drift

TEST(SessionNote, DriftNamesTheDistraction) {
    State state = running();
    state.driftAppName = "News";
    EXPECT_EQ(noteOf(state), (Note{QStringLiteral("exclamationmark.circle"),
                                   QStringLiteral("News is on your distractions list"), true}));
}

TEST(SessionNote, DriftHidesAFailureOfDoNotDisturbUntilItClears) {
    State state = running();
    state.focusModeEnabled = true;
    state.focusModeError = "It failed.";
    state.driftAppName = "News";
    EXPECT_EQ(textOf(state), "News is on your distractions list");
    state.driftAppName.reset();
    EXPECT_EQ(textOf(state), "Do Not Disturb didn't turn on · Details");
}

// Do Not Disturb

TEST(SessionNote, DoNotDisturbThatIsNotSetUpOffersTheFix) {
    State state = idle();
    state.focusModeEnabled = true;
    state.focusModeProblem = "No shortcut.";
    EXPECT_EQ(noteOf(state),
              (Note{QStringLiteral("moon"), QStringLiteral("Do Not Disturb isn't set up · Fix"), true,
                    Action::openFocusPane}));
}

TEST(SessionNote, DoNotDisturbThatFailedOffersDetails) {
    State state = running();
    state.focusModeEnabled = true;
    state.focusModeError = "It failed.";
    EXPECT_EQ(noteOf(state),
              (Note{QStringLiteral("moon"), QStringLiteral("Do Not Disturb didn't turn on · Details"), true,
                    Action::openFocusPane}));
}

TEST(SessionNote, FailureOfDoNotDisturbShowsOnlyWhileRunning) {
    for (State state : {idle(), paused()}) {
        state.focusModeEnabled = true;
        state.focusModeError = "It failed.";
        EXPECT_EQ(noteOf(state), std::nullopt);
    }
}

TEST(SessionNote, MissingSetUpComesBeforeAFailure) {
    State state = running();
    state.focusModeEnabled = true;
    state.focusModeProblem = "No shortcut.";
    state.focusModeError = "It failed.";
    EXPECT_EQ(textOf(state), "Do Not Disturb isn't set up · Fix");
}

TEST(SessionNote, DoNotDisturbThatIsOffSaysNothing) {
    State state = running();
    state.focusModeProblem = "No shortcut.";
    state.focusModeError = "It failed.";
    EXPECT_EQ(noteOf(state), std::nullopt);
}

TEST(SessionNote, DoNotDisturbComesBeforeAMeeting) {
    State state = withMeetingIn(idle(), 10min);
    state.focusModeEnabled = true;
    state.focusModeProblem = "No shortcut.";
    EXPECT_EQ(textOf(state), "Do Not Disturb isn't set up · Fix");
}

// Meeting

TEST(SessionNote, MeetingIsAQuietNoteWithoutAction) {
    EXPECT_EQ(noteOf(withMeetingIn(idle(), 40min)),
              (Note{QStringLiteral("calendar"), QStringLiteral("Design review in 40m")}));
}

TEST(SessionNote, MeetingIsToldWhileIdleFromUnderNinetyMinutesOn) {
    struct Case {
        std::chrono::microseconds ahead;
        const char* text;
    };
    const Case cases[] = {
        {90min, "nothing"},
        {90min - 1us, "Design review in 1h 29m"},
        {89min, "Design review in 1h 29m"},
        {60min, "Design review in 1h"},
        {45min + 59s, "Design review in 45m"},
        {3h, "nothing"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(textOf(withMeetingIn(idle(), row.ahead)), row.text);
}

TEST(SessionNote, MeetingUnderAMinuteAwayReadsAsOneMinute) {
    State state = idle();
    state.fitSessionsToCalendar = false;
    for (const std::chrono::microseconds ahead :
         {std::chrono::microseconds(119s), std::chrono::microseconds(59s), std::chrono::microseconds(1us),
          std::chrono::microseconds(0), std::chrono::microseconds(-30s), std::chrono::microseconds(-10min)})
        EXPECT_EQ(textOf(withMeetingIn(state, ahead)), "Design review in 1m") << ahead.count();
}

TEST(SessionNote, IdleNoteTellsHowFarTheNextSessionWillBeCut) {
    struct Case {
        std::chrono::microseconds ahead;
        const char* text;
    };
    const Case cases[] = {
        // Two minutes of buffer.
        {20min, "Design review in 20m · next session 18 min"},
        {20min + 59s, "Design review in 20m · next session 18 min"},
        {27min, "Design review in 27m"},
        {26min + 59s, "Design review in 26m · next session 24 min"},
        {12min, "Design review in 12m · next session 10 min"},
        {11min + 59s, "Design review in 11m"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(textOf(withMeetingIn(idle(), row.ahead)), row.text);
}

TEST(SessionNote, CutIsNotToldWhereSessionsAreNotFitted) {
    State state = withMeetingIn(idle(), 20min);
    state.fitSessionsToCalendar = false;
    EXPECT_EQ(textOf(state), "Design review in 20m");
}

TEST(SessionNote, CutFollowsTheBufferAndTheConfiguredLength) {
    State state = withMeetingIn(idle(), 20min);
    state.meetingBuffer = Seconds{0};
    EXPECT_EQ(textOf(state), "Design review in 20m · next session 20 min");
    state.focusDuration = Seconds{1200};
    EXPECT_EQ(textOf(state), "Design review in 20m");
}

TEST(SessionNote, ShortenedSessionTellsWhatItEndsBefore) {
    for (State state : {running(), paused()}) {
        state = withMeetingIn(state, 40min);
        state.sessionWasShortened = true;
        EXPECT_EQ(textOf(state), "Ends before Design review");
    }
}

TEST(SessionNote, MeetingThatBeginsBeforeTheSessionEndsIsToldWithItsTime) {
    for (const State& state : {running(), paused()}) {
        EXPECT_EQ(textOf(withMeetingIn(state, 15min)), "Design review at 10:15");
        EXPECT_EQ(textOf(withMeetingIn(state, 25min - 1us)), "Design review at 10:24");
    }
}

TEST(SessionNote, TimeOfTheMeetingIsLocalAndInTheUsersManner) {
    const State state = withMeetingIn(running(), 15min);
    EXPECT_EQ(note(state, test::zone("Asia/Tokyo"), QLocale(QLocale::English, QLocale::UnitedStates))->text,
              QStringLiteral("Design review at 7:15 PM"));
}

TEST(SessionNote, SessionThatEndsBeforeTheMeetingLeavesTheLineBlank) {
    for (const State& state : {running(), paused()}) {
        const State meeting = withMeetingIn(withUsage(state, {editor}), 25min);
        EXPECT_EQ(noteOf(meeting), std::nullopt) << "nor does the summary take its place in focus";
    }
}

TEST(SessionNote, BreakHasNoMeetingButTheSummaryOfTheLastSession) {
    for (const Phase phase : {Phase::shortBreak, Phase::longBreak}) {
        for (State state : {running(phase), paused(phase)}) {
            EXPECT_EQ(textOf(withMeetingIn(state, 10min)), "nothing");
            EXPECT_EQ(textOf(withMeetingIn(withUsage(state, {editor}), 10min)), "Focused 100% · Editor 20m");
        }
        State selected = idle();
        selected.phase = phase;
        EXPECT_EQ(textOf(withMeetingIn(selected, 10min)), "nothing");
    }
}

TEST(SessionNote, MeetingComesBeforeTheSummaryWhileIdle) {
    EXPECT_EQ(textOf(withMeetingIn(withUsage(idle(), {editor}), 40min)), "Design review in 40m");
    EXPECT_EQ(textOf(withMeetingIn(withUsage(idle(), {editor}), 90min)), "Focused 100% · Editor 20m");
}

// Last session

TEST(SessionNote, LastSessionIsAQuietNoteWithoutAction) {
    EXPECT_EQ(noteOf(withDistractions(withUsage(idle(), {editor, news}), {"org.example.news"})),
              (Note{QStringLiteral("scope"), QStringLiteral("Focused 80% · Editor 20m")}));
}

TEST(SessionNote, FocusPhaseUnderWayShowsNoSummary) {
    EXPECT_EQ(noteOf(withUsage(running(), {editor})), std::nullopt);
    EXPECT_EQ(noteOf(withUsage(paused(), {editor})), std::nullopt);
}

TEST(SessionNote, OnlyTimeAwayAndNoScoreIsNoNote) {
    EXPECT_EQ(noteOf(withUsage(idle(), {away})), std::nullopt);
    EXPECT_EQ(noteOf(withUsage(idle(), {})), std::nullopt);
}

TEST(SessionNote, FirstEntryThatIsNotTimeAwayIsNamed) {
    EXPECT_EQ(textOf(withUsage(idle(), {away, news, editor})), "Focused 100% · News 5m");
}

TEST(SessionNote, EntryWithoutAScoreStandsAlone) {
    const AppUsage glimpse{"org.example.glimpse", "Glimpse", Seconds{0.5}};
    EXPECT_EQ(textOf(withUsage(idle(), {away, glimpse})), "Glimpse 1m");
}

TEST(SessionNote, ScoreIsRoundedWithHalvesAwayFromZero) {
    const auto score = [](double good, double bad) {
        return textOf(withDistractions(
            withUsage(idle(), {{"a", "Editor", Seconds{good}}, {"b", "News", Seconds{bad}}}), {"b"}));
    };
    EXPECT_EQ(score(125, 875), "Focused 13% · Editor 2m");
    EXPECT_EQ(score(124, 876), "Focused 12% · Editor 2m");
    EXPECT_EQ(score(0, 1000), "Focused 0% · Editor 1m");
}

TEST(SessionNote, TimeOfAnEntryIsInWholeMinutesAndAtLeastOne) {
    const auto entry = [](double seconds) {
        return textOf(withUsage(idle(), {{"a", "Editor", Seconds{seconds}}}));
    };
    EXPECT_EQ(entry(119.9), "Focused 100% · Editor 1m");
    EXPECT_EQ(entry(120), "Focused 100% · Editor 2m");
    EXPECT_EQ(entry(3), "Focused 100% · Editor 1m");
    EXPECT_EQ(entry(5400), "Focused 100% · Editor 1h 30m");
    EXPECT_EQ(entry(std::numeric_limits<double>::quiet_NaN()), "Editor 1m");
}

// Failures

TEST(SessionNote, FailureToSaveComesFirstAsAnAlert) {
    State state = running();
    state.driftAppName = "News";
    state.recoveryNotice = "Something was restored.";
    state.saveError = "Selvane couldn't save tasks.json: No space left on device";
    EXPECT_EQ(noteOf(state), (Note{QStringLiteral("exclamationmark.triangle"),
                                   QStringLiteral("Selvane couldn't save tasks.json: No space left on "
                                                  "device"),
                                   true, std::nullopt, Urgency::alert}));
}

TEST(SessionNote, RecoveryComesSecondAndCanBeDismissed) {
    State state = running();
    state.driftAppName = "News";
    state.recoveryNotice = "Something was restored.";
    EXPECT_EQ(noteOf(state),
              (Note{QStringLiteral("exclamationmark.triangle"), QStringLiteral("Something was restored."),
                    true, Action::dismissRecoveryNotice, Urgency::alert}));
}

// The clock

TEST(SessionNote, IdleMeetingReadsDifferentlyAfterEachWholeMinute) {
    EXPECT_EQ(timeToChange(withMeetingIn(idle(), 20min + 15s)), Seconds{15.001});
    EXPECT_EQ(timeToChange(withMeetingIn(idle(), 20min)), Seconds{0.001});
    EXPECT_EQ(timeToChange(withMeetingIn(idle(), 170min + 1s)), Seconds{1.001});
}

TEST(SessionNote, PausedSessionGrowsIntoTheMeeting) {
    EXPECT_EQ(timeToChange(withMeetingIn(paused(), 30min)), Seconds{300.001});
    EXPECT_EQ(timeToChange(withMeetingIn(paused(), 20min)), std::nullopt);
}

TEST(SessionNote, NothingElseDependsOnTheClock) {
    EXPECT_EQ(timeToChange(idle()), std::nullopt);
    EXPECT_EQ(timeToChange(withMeetingIn(running(), 20min)), std::nullopt) << "it ticks by itself";
    EXPECT_EQ(timeToChange(withMeetingIn(idle(), -1s)), std::nullopt);
    State selected = idle();
    selected.phase = Phase::shortBreak;
    EXPECT_EQ(timeToChange(withMeetingIn(selected, 20min)), std::nullopt);
}

// In step with the model

class SessionNoteModelTest : public testing::Test {
protected:
    void launch() {
        harness.launch();
        line = std::make_unique<SessionNoteModel>(harness.model(), harness.scheduler, &windows);
        QObject::connect(line.get(), &SessionNoteModel::changed, line.get(), [this] { ++changes; });
    }

    [[nodiscard]] std::string text() const { return line->text().toStdString(); }

    test::ModelHarness harness;
    test::RecordingWindows windows{harness.journal};
    std::unique_ptr<SessionNoteModel> line;
    int changes = 0;
};

TEST_F(SessionNoteModelTest, WithoutANoteEverythingIsEmpty) {
    launch();
    EXPECT_EQ(text(), "");
    EXPECT_EQ(line->symbol(), QString());
    EXPECT_FALSE(line->isEmphasized());
    EXPECT_FALSE(line->hasAction());
    EXPECT_FALSE(line->isAlert());
}

TEST_F(SessionNoteModelTest, FollowsTheGuard) {
    launch();
    harness.answers.driftAppName = "News";
    harness.model().focusGuard().changed.emit();
    EXPECT_EQ(text(), "News is on your distractions list");
    EXPECT_TRUE(line->isEmphasized());
    harness.answers.driftAppName.reset();
    harness.answers.lastUsage = {{editor}};
    harness.model().focusGuard().changed.emit();
    EXPECT_EQ(text(), "Focused 100% · Editor 20m");
    EXPECT_EQ(changes, 2);
}

TEST_F(SessionNoteModelTest, ScoreKnowsWhatTheUserCallsDistracting) {
    harness.answers.lastUsage = {{editor, news}};
    launch();
    EXPECT_EQ(text(), "Focused 100% · Editor 20m");
    harness.model().settings().distractingApps.set({"org.example.news"});
    EXPECT_EQ(text(), "Focused 80% · Editor 20m");
}

TEST_F(SessionNoteModelTest, ShortenedSessionEndsBeforeItsMeeting) {
    harness.answers.nextEvent = CalendarEvent{"Design review", now + 20min};
    launch();
    harness.model().engine().adjustDuration = [](Phase, Seconds) { return Seconds{1080}; };
    harness.model().engine().start();
    ASSERT_TRUE(harness.model().sessionWasShortened());
    EXPECT_EQ(text(), "Ends before Design review");
}

TEST_F(SessionNoteModelTest, FollowsTheFocusModeAndItsSetting) {
    launch();
    harness.answers.focusModeProblem = "No shortcut.";
    harness.model().focusMode().changed.emit();
    EXPECT_EQ(text(), "");
    harness.model().settings().focusModeEnabled.set(true);
    EXPECT_EQ(text(), "Do Not Disturb isn't set up · Fix");
    harness.answers.focusModeProblem.reset();
    harness.model().focusMode().changed.emit();
    EXPECT_EQ(text(), "");
}

TEST_F(SessionNoteModelTest, FollowsTheCalendarTheTimerAndTheLengths) {
    launch();
    harness.answers.nextEvent = CalendarEvent{"Design review", now + 20min};
    harness.model().calendar().changed.emit();
    EXPECT_EQ(text(), "Design review in 20m · next session 18 min");
    harness.model().settings().meetingBufferMinutes.set(5);
    EXPECT_EQ(text(), "Design review in 20m · next session 15 min");
    harness.model().settings().fitSessionsToCalendar.set(false);
    EXPECT_EQ(text(), "Design review in 20m");
    harness.model().engine().start();
    EXPECT_TRUE(line->text().startsWith(QStringLiteral("Design review at "))) << text();
}

TEST_F(SessionNoteModelTest, TicksThatChangeNoWordAreNotTold) {
    launch();
    harness.model().engine().start();
    harness.pass(Seconds{10});
    EXPECT_EQ(changes, 0);
}

TEST_F(SessionNoteModelTest, MeetingDrawsNearWhileTheNoteIsShown) {
    launch();
    harness.model().settings().fitSessionsToCalendar.set(false);
    harness.answers.nextEvent = CalendarEvent{"Design review", now + 20min + 30s};
    line->willShow();
    EXPECT_EQ(text(), "Design review in 20m");
    harness.pass(Seconds{30});
    EXPECT_EQ(text(), "Design review in 20m");
    harness.pass(Seconds{1});
    EXPECT_EQ(text(), "Design review in 19m");
    harness.pass(Seconds{60});
    EXPECT_EQ(text(), "Design review in 18m");
}

TEST_F(SessionNoteModelTest, HiddenNoteWakesNobody) {
    launch();
    harness.answers.nextEvent = CalendarEvent{"Design review", now + 20min};
    harness.model().calendar().changed.emit();
    const auto waiting = harness.scheduler.waiting();
    line->willShow();
    EXPECT_EQ(harness.scheduler.waiting(), waiting + 1);
    line->didHide();
    EXPECT_EQ(harness.scheduler.waiting(), waiting);
}

TEST_F(SessionNoteModelTest, PausedSessionHearsOfTheMeetingThatItGrowsInto) {
    launch();
    harness.answers.nextEvent = CalendarEvent{"Design review", now + 26min};
    harness.model().engine().start();
    harness.model().engine().pause();
    line->willShow();
    EXPECT_EQ(text(), "");
    harness.pass(Seconds{61});
    EXPECT_TRUE(line->text().startsWith(QStringLiteral("Design review at "))) << text();
}

TEST_F(SessionNoteModelTest, ActionOpensTheFocusPane) {
    launch();
    harness.model().settings().focusModeEnabled.set(true);
    harness.answers.focusModeProblem = "No shortcut.";
    harness.model().focusMode().changed.emit();
    EXPECT_TRUE(line->hasAction());
    line->act();
    EXPECT_EQ(harness.model().windowPane(), Pane::focus);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
}

TEST_F(SessionNoteModelTest, NoteWithoutActionDoesNothing) {
    launch();
    harness.answers.driftAppName = "News";
    harness.model().focusGuard().changed.emit();
    EXPECT_FALSE(line->hasAction());
    line->act();
    EXPECT_FALSE(harness.journal.has("windows.forward"));
    EXPECT_EQ(text(), "News is on your distractions list");
}

TEST_F(SessionNoteModelTest, DismissedRecoveryGivesWayAndStaysInTheModel) {
    harness.answers.recoveryNotice = "Something was restored.";
    launch();
    EXPECT_EQ(text(), "Something was restored.");
    EXPECT_TRUE(line->isAlert());
    line->act();
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(harness.model().recoveryNotice());
    harness.model().setRecoveryNotice("Something else.", AppModel::Recovery::complete);
    EXPECT_EQ(text(), "Something else.") << "another notice is news";
}

TEST_F(SessionNoteModelTest, FailureToSaveShowsUntilItWorksAgain) {
    launch();
    harness.folder.write("Selvane", "a file where the folder should be");
    harness.model().addTask("Write");
    EXPECT_EQ(text(), *harness.model().saveError());
    EXPECT_TRUE(line->isAlert());
    std::filesystem::remove(harness.folder.path() / "Selvane");
    harness.model().addTask("Read");
    EXPECT_EQ(text(), "");
}

} // namespace
} // namespace selvane::SessionNote
