#include "Scenes.h"

#include "Selvane/App/AppSettings.h"
#include "Stage.h"

#include <algorithm>
#include <chrono>
#include <ostream>
#include <utility>

namespace selvane::test {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using Step = std::function<void(Stage&)>;

constexpr auto longTitle = "A title that is far longer than any row of the list can ever show";

// The desktop

void dark(Stage& stage) {
    stage.appearance.setDark(true);
}

void highContrast(Stage& stage) {
    stage.appearance.setHighContrast(true);
}

void withoutCompositor(Stage& stage) {
    stage.appearance.setComposited(false);
}

Step glass(GlassLevel level) {
    return [level](Stage& stage) { stage.settings().glassLevel.set(level); };
}

// What the user did before

FocusSession focusSession(Date start, Seconds length) {
    FocusSession session{};
    session.id = UUID::random();
    session.start = start;
    session.end = adding(length, start);
    session.phase = Phase::focus;
    session.plannedSeconds = length;
    session.actualSeconds = length;
    session.completed = true;
    return session;
}

/// A session of 25 minutes at nine in the morning, `daysAgo`.
FocusSession morning(int daysAgo) {
    return focusSession(ModelHarness::launchTime - hours{1} - hours{24 * daysAgo}, minutes{25});
}

/// Eleven days in a row on which the goal was met, and a first session today.
void twelveGoodDays(Stage& stage) {
    std::vector<FocusSession> sessions;
    for (int day = 11; day >= 0; --day) {
        sessions.push_back(morning(day));
        sessions.push_back(focusSession(adding(minutes{30}, sessions.back().start), minutes{25}));
    }
    stage.model().setSessions(std::move(sessions));
}

/// A year with lazy Sundays, holidays, good weeks and bad ones, and days that only a freeze saved.
void aYear(Stage& stage) {
    std::vector<FocusSession> sessions;
    for (int day = 365; day >= 0; --day) {
        const bool isHoliday = day > 96 && day < 107;
        const bool isForgotten = day == 9 || day == 31 || day == 33;
        if (isHoliday || isForgotten)
            continue;
        const bool isGoodTime = day < 60;
        const bool isSunday = day % 7 == 4;
        const int asUsual = 2 + (day * 7 + day / 5 * 3) % 4;
        const int count = isGoodTime ? asUsual : isSunday ? day % 3 : asUsual - (day / 7 % 6 == 1 ? 1 : 0);
        for (int number = 0; number < count; ++number)
            sessions.push_back(
                focusSession(ModelHarness::launchTime - hours{24 * day} - minutes{30 * number}, minutes{25}));
    }
    std::ranges::sort(sessions, {}, &FocusSession::start);
    stage.model().setSessions(std::move(sessions));
}

void add(Stage& stage, std::string_view title, int estimate = 0, int credited = 0) {
    TaskList list = stage.model().tasks();
    const auto added = list.add(title, stage.harness.now);
    list.setEstimate(added->id, estimate);
    for (int session = 0; session < credited; ++session)
        list.creditPomodoro(added->id);
    stage.model().setTasks(list);
}

UUID idOf(Stage& stage, std::string_view title) {
    const auto& items = stage.model().tasks().items;
    return std::ranges::find(items, title, &TaskItem::title)->id;
}

void finish(Stage& stage, std::string_view title) {
    TaskList list = stage.model().tasks();
    list.setDone(idOf(stage, title), true, stage.harness.now);
    list.normalize();
    stage.model().setTasks(list);
}

void focusOn(Stage& stage, std::string_view title) {
    stage.model().setCurrentTaskID(idOf(stage, title));
}

void fourTasks(Stage& stage) {
    add(stage, "Write the quarterly report", 4, 2);
    add(stage, "Reply about the venue");
    add(stage, "Sketch the onboarding flow", 2);
    add(stage, "Book the train");
    finish(stage, "Book the train");
    focusOn(stage, "Write the quarterly report");
}

void twelveTasks(Stage& stage) {
    fourTasks(stage);
    add(stage, longTitle, 8, 9);
    add(stage, "Donaudampfschifffahrtsgesellschaftskapitänsmütze", 1);
    for (int number = 6; number < 12; ++number)
        add(stage, "Errand " + std::to_string(number), number % 3);
    focusOn(stage, longTitle);
}

void onlyDoneTasks(Stage& stage) {
    for (const auto* const title : {"Water the plants", "Book the train"}) {
        add(stage, title, 1, 1);
        finish(stage, title);
    }
}

/// The popover in the middle of a life: some history, some tasks.
void workingDay(Stage& stage) {
    twelveGoodDays(stage);
    fourTasks(stage);
}

// The timer

Step style(TimerStyle style) {
    return [style](Stage& stage) { stage.settings().timerStyle.set(style); };
}

void secondOfFour(Stage& stage) {
    stage.engine().start();
    stage.harness.pass(minutes{25});
    stage.engine().skip();
}

/// The phase is under way and a good part of it is over.
void running(Stage& stage) {
    stage.engine().start();
    stage.harness.pass(stage.engine().currentDuration() * 0.42);
}

void paused(Stage& stage) {
    running(stage);
    stage.engine().pause();
}

void shortBreak(Stage& stage) {
    stage.engine().select(Phase::shortBreak);
    running(stage);
}

void longBreak(Stage& stage) {
    stage.engine().select(Phase::longBreak);
    running(stage);
}

void longPhase(Stage& stage) {
    stage.settings().focusMinutes.set(120);
}

// What the note tells

void drift(Stage& stage) {
    stage.harness.answers.driftAppName = "YouTube";
}

void missingFocusMode(Stage& stage) {
    stage.settings().focusModeEnabled.set(true);
    stage.harness.answers.focusModeProblem = "No notification server";
}

void failedFocusMode(Stage& stage) {
    stage.settings().focusModeEnabled.set(true);
    stage.harness.answers.focusModeError = "No answer";
}

Step meetingIn(minutes length) {
    return [length](Stage& stage) {
        stage.harness.answers.nextEvent = CalendarEvent{"Design review", stage.harness.now + length};
    };
}

void lastSession(Stage& stage) {
    stage.harness.answers.lastUsage = {{"org.gimp.GIMP", "GIMP", minutes{19}},
                                       {"org.mozilla.firefox", "Firefox", minutes{6}}};
    stage.settings().distractingApps.set({"org.mozilla.firefox"});
}

/// The phase is shorter than it is set, as before a meeting.
void shortened(Stage& stage) {
    stage.engine().adjustDuration = [](Phase, Seconds) -> Seconds { return minutes{18}; };
    running(stage);
}

// Music

void playing(Stage& stage) {
    stage.harness.answers.isMusicPlaying = true;
}

Step music(MusicSource source) {
    return [source](Stage& stage) { stage.settings().musicSource.set(source); };
}

// What is done with the open popover

void progressTab(Stage& stage) {
    stage.press(Qt::Key_2, Qt::ControlModifier);
}

/// Presses the control of that accessible name.
Step pressed(std::string name) {
    return [name = std::move(name)](Stage& stage) { stage.pressControl(name); };
}

/// The key, several times.
Step key(Qt::Key key, int times = 1) {
    return [key, times](Stage& stage) {
        for (int time = 0; time < times; ++time)
            stage.press(key);
    };
}

} // namespace

void PrintTo(const Scene& scene, std::ostream* stream) {
    *stream << scene.name;
}

const std::vector<Scene>& scenes() {
    using enum Scene::Scales;
    static const std::vector<Scene> all{
        {"ring-idle", {workingDay}},
        {"ring-running", {workingDay, secondOfFour, running, playing}, {}, both},
        {"ring-paused", {workingDay, secondOfFour, paused}},
        {"ring-short-break", {workingDay, shortBreak}},
        {"ring-long-break", {workingDay, longBreak}},
        {"ring-idle-dark", {dark, workingDay}},
        {"ring-running-dark", {dark, workingDay, secondOfFour, running, playing}, {}, both},
        {"ring-paused-dark", {dark, workingDay, secondOfFour, paused}},
        {"ring-short-break-dark", {dark, workingDay, shortBreak}},
        {"ring-long-break-dark", {dark, workingDay, longBreak}},
        {"ring-two-hours", {workingDay, longPhase}},

        {"bar-idle", {style(TimerStyle::bar), workingDay}},
        {"bar-running", {style(TimerStyle::bar), workingDay, secondOfFour, running}, {}, both},
        {"bar-paused", {style(TimerStyle::bar), workingDay, secondOfFour, paused}},
        {"bar-short-break", {style(TimerStyle::bar), workingDay, shortBreak}},
        {"bar-long-break", {style(TimerStyle::bar), workingDay, longBreak}},
        {"bar-running-dark", {dark, style(TimerStyle::bar), workingDay, secondOfFour, running}},

        {"minimal-idle", {style(TimerStyle::minimal), workingDay}},
        {"minimal-running", {style(TimerStyle::minimal), workingDay, secondOfFour, running}, {}, both},
        {"minimal-paused", {style(TimerStyle::minimal), workingDay, secondOfFour, paused}},
        {"minimal-short-break", {style(TimerStyle::minimal), workingDay, shortBreak}},
        {"minimal-long-break", {style(TimerStyle::minimal), workingDay, longBreak}},
        {"minimal-running-dark", {dark, style(TimerStyle::minimal), workingDay, secondOfFour, running}},

        {"note-drift", {workingDay, drift, running}},
        {"note-drift-dark", {dark, workingDay, drift, running}},
        {"note-missing-focus-mode", {workingDay, missingFocusMode}},
        {"note-failed-focus-mode", {workingDay, failedFocusMode, running}},
        {"note-meeting-idle", {workingDay, meetingIn(minutes{40})}},
        {"note-meeting-next-session", {workingDay, meetingIn(minutes{20})}},
        {"note-meeting-shortens", {workingDay, meetingIn(minutes{20}), shortened}},
        {"note-meeting-at", {workingDay, running, meetingIn(minutes{10})}},
        {"note-last-session", {workingDay, lastSession}},

        {"tasks-none", {}, {}, both},
        {"tasks-none-dark", {dark}},
        {"tasks-twelve", {twelveGoodDays, twelveTasks}, {}, both},
        {"tasks-twelve-dark", {dark, twelveGoodDays, twelveTasks}},
        {"tasks-only-done", {twelveGoodDays, onlyDoneTasks}},

        {"progress-none", {fourTasks}, {progressTab}},
        {"progress-none-dark", {dark, fourTasks}, {progressTab}},
        {"progress-few-days", {workingDay}, {progressTab}},
        {"progress-year", {aYear, fourTasks}, {progressTab}, both},
        {"progress-year-dark", {dark, aYear, fourTasks}, {progressTab}, both},
        {"progress-year-contrast", {highContrast, aYear, fourTasks}, {progressTab}},

        {"music-none", {workingDay, music(MusicSource::none)}},
        {"music-player", {workingDay, music(MusicSource::appleMusic)}},
        {"music-spotify-playing", {workingDay, music(MusicSource::spotify), playing}},

        {"glass-off", {glass(GlassLevel::off), workingDay}},
        {"glass-low", {glass(GlassLevel::low), workingDay}},
        {"glass-high", {glass(GlassLevel::high), workingDay}},
        {"glass-off-dark", {dark, glass(GlassLevel::off), workingDay}},
        {"glass-low-dark", {dark, glass(GlassLevel::low), workingDay}},
        {"glass-high-dark", {dark, glass(GlassLevel::high), workingDay}},

        {"menu-phase", {workingDay}, {pressed("Phase: Focus")}},
        {"menu-phase-running", {workingDay, running}, {pressed("Phase: Focus")}},
        {"menu-more", {workingDay}, {pressed("More")}},
        {"menu-more-dark", {dark, workingDay}, {pressed("More"), key(Qt::Key_Down, 2)}, both},
        {"menu-sound", {workingDay}, {pressed("Rain")}},
        {"menu-task-to-focus-on", {twelveGoodDays, twelveTasks}, {pressed(longTitle)}},
        {"menu-open-task", {workingDay}, {pressed("Reply about the venue"), key(Qt::Key_Down)}},
        {"menu-estimate-contrast",
         {highContrast, workingDay},
         {pressed("Reply about the venue"), key(Qt::Key_Down, 2), key(Qt::Key_Right)}},
        {"icons", {workingDay}, {pressed("Focus icon")}},
        {"icons-dark", {dark, workingDay}, {pressed("Focus icon")}, both},
        {"minutes-edited", {workingDay}, {pressed("25:00 remaining")}},
        {"title-edited",
         {workingDay},
         {pressed("Reply about the venue"), key(Qt::Key_Down, 3), key(Qt::Key_Return)}},
        {"keyboard-on-button", {workingDay}, {key(Qt::Key_Tab)}},
        {"keyboard-on-sound-dark", {dark, workingDay}, {key(Qt::Key_Tab, 2)}},

        {"contrast", {highContrast, workingDay, secondOfFour, running, playing}, {}, both},
        {"contrast-dark", {dark, highContrast, workingDay, secondOfFour, running, playing}, {}, both},
        {"without-compositor", {withoutCompositor, workingDay}},
        {"without-compositor-dark", {dark, withoutCompositor, workingDay}},
    };
    return all;
}

void play(const Scene& scene, Stage& stage) {
    for (const auto& step : scene.arrange)
        step(stage);
    stage.open();
    for (const auto& step : scene.act)
        step(stage);
}

std::string fileName(const Scene& scene, int scale) {
    return scene.name + (scale == 1 ? "" : "@" + std::to_string(scale) + "x") + ".png";
}

} // namespace selvane::test
