#include "Selvane/UI/Popover/SessionNote.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/App/DateText.h"
#include "Selvane/UI/QtText.h"
#include "SelvaneCore/SessionFit.h"
#include "SelvaneCore/TimeFormat.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace selvane::SessionNote {

namespace {

/// From this far ahead on a meeting is of no interest to somebody who hasn't started yet.
constexpr std::int64_t distantMinutes = 90;

std::optional<Note> failureNote(const State& state) {
    const auto symbol = QStringLiteral("exclamationmark.triangle");
    if (state.saveError)
        return Note{symbol, qtText(*state.saveError), true, std::nullopt, Urgency::alert};
    if (state.recoveryNotice)
        return Note{symbol, qtText(*state.recoveryNotice), true, Action::dismissRecoveryNotice,
                    Urgency::alert};
    return std::nullopt;
}

std::optional<Note> driftNote(const State& state) {
    if (!state.driftAppName)
        return std::nullopt;
    return Note{QStringLiteral("exclamationmark.circle"),
                qtText(*state.driftAppName) + QStringLiteral(" is on your distractions list"), true};
}

std::optional<Note> focusModeNote(const State& state) {
    if (!state.focusModeEnabled)
        return std::nullopt;
    const auto symbol = QStringLiteral("moon");
    if (state.focusModeProblem)
        return Note{symbol, QStringLiteral("Do Not Disturb isn't set up · Fix"), true, Action::openFocusPane};
    if (state.timer == Timer::running && state.focusModeError)
        return Note{symbol, QStringLiteral("Do Not Disturb didn't turn on · Details"), true,
                    Action::openFocusPane};
    return std::nullopt;
}

/// The length that the next session would be cut down to, in the words of the note; empty if it wouldn't be.
QString shorteningText(const State& state, const CalendarEvent& event) {
    if (!state.fitSessionsToCalendar)
        return {};
    const SessionFit fit =
        SessionFit::evaluate(state.now, state.focusDuration, event.start, state.meetingBuffer);
    switch (fit.kind()) {
    case SessionFit::Kind::shorten:
        return QStringLiteral(" · next session %1 min").arg(static_cast<qint64>(fit.length()->count() / 60));
    case SessionFit::Kind::fits:
    case SessionFit::Kind::noRoom:
        return {};
    }
    return {};
}

std::optional<Note> idleMeetingNote(const State& state, const CalendarEvent& event) {
    const std::int64_t minutes =
        std::chrono::duration_cast<std::chrono::minutes>(event.start - state.now).count();
    if (minutes >= distantMinutes)
        return std::nullopt;
    const auto shown = static_cast<int>(std::max(minutes, std::int64_t{1}));
    return Note{QStringLiteral("calendar"), qtText(event.title) + QStringLiteral(" in ") +
                                                qtText(TimeFormat::duration(shown)) +
                                                shorteningText(state, event)};
}

std::optional<Note> meetingNote(const State& state, const Calendar& calendar, const QLocale& locale) {
    if (state.phase != Phase::focus || !state.nextEvent)
        return std::nullopt;
    const CalendarEvent& event = *state.nextEvent;
    if (state.timer == Timer::idle)
        return idleMeetingNote(state, event);
    if (state.sessionWasShortened)
        return Note{QStringLiteral("calendar"), QStringLiteral("Ends before ") + qtText(event.title)};
    if (event.start < adding(state.remaining, state.now))
        return Note{QStringLiteral("calendar"),
                    qtText(event.title) + QStringLiteral(" at ") + timeOfDay(event.start, calendar, locale)};
    return std::nullopt;
}

QString usageText(const AppUsage& usage) {
    // In this order, so that what is not a number is a minute, too.
    const double minutes = std::min(std::max(1.0, std::trunc(usage.seconds.count() / 60)), 1e6);
    return qtText(usage.name) + u' ' + qtText(TimeFormat::duration(static_cast<int>(minutes)));
}

std::optional<Note> lastSessionNote(const State& state) {
    const bool isInFocus = state.timer != Timer::idle && state.phase == Phase::focus;
    if (isInFocus || !state.lastUsage)
        return std::nullopt;
    QStringList parts;
    if (const auto score = FocusScore::compute(*state.lastUsage, state.distracting))
        parts << QStringLiteral("Focused %1%").arg(std::lround(*score * 100));
    const auto used =
        std::ranges::find_if(*state.lastUsage, [](const AppUsage& usage) { return !usage.isAway(); });
    if (used != state.lastUsage->end())
        parts << usageText(*used);
    if (parts.isEmpty())
        return std::nullopt;
    return Note{QStringLiteral("scope"), parts.join(QStringLiteral(" · "))};
}

Timer timerOf(const TimerEngine& engine) {
    if (engine.isRunning())
        return Timer::running;
    return engine.isPaused() ? Timer::paused : Timer::idle;
}

} // namespace

State state(const AppModel& model) {
    const TimerEngine& engine = model.engine();
    const AppSettings& settings = model.settings();
    State state{
        // A timer at rest doesn't read the clock.
        .now = engine.isRunning() ? engine.now() : model.now(),
        .phase = engine.phase(),
        .timer = timerOf(engine),
        .remaining = engine.remaining(),
        .sessionWasShortened = model.sessionWasShortened(),
        .saveError = model.saveError(),
        .recoveryNotice = model.recoveryNotice(),
        .driftAppName = model.focusGuard().driftAppName(),
        .focusModeEnabled = settings.focusModeEnabled(),
        .focusModeProblem = {},
        .focusModeError = {},
        .nextEvent = model.calendar().nextEvent(),
        .fitSessionsToCalendar = settings.fitSessionsToCalendar(),
        .focusDuration = engine.config().duration(Phase::focus),
        .meetingBuffer = std::chrono::minutes{settings.meetingBufferMinutes()},
        .lastUsage = {},
        .distracting = {},
    };
    if (state.focusModeEnabled) {
        state.focusModeProblem = model.focusMode().problem();
        state.focusModeError = model.focusMode().lastError();
    }
    if (const auto& usage = model.focusGuard().lastUsage()) {
        state.lastUsage = usage;
        state.distracting = settings.distractingSet();
    }
    return state;
}

std::optional<Note> note(const State& state, const Calendar& calendar, const QLocale& locale) {
    if (auto failure = failureNote(state))
        return failure;
    // 1. Drift
    if (auto drift = driftNote(state))
        return drift;
    // 2. Do Not Disturb
    if (auto focusMode = focusModeNote(state))
        return focusMode;
    // 3. Meeting
    if (auto meeting = meetingNote(state, calendar, locale))
        return meeting;
    // 4. Last session
    return lastSessionNote(state);
}

std::optional<Seconds> timeToChange(const State& state) {
    if (state.timer == Timer::running || state.phase != Phase::focus || !state.nextEvent)
        return std::nullopt;
    // A whole number of minutes before the event, or, while paused, when a session that goes on now would no
    // longer end before it.
    using namespace std::chrono;
    const auto left = state.nextEvent->start - state.now;
    if (left <= microseconds::zero())
        return std::nullopt;
    if (state.timer == Timer::paused) {
        const Seconds room = Seconds(left) - state.remaining;
        return room < Seconds::zero() ? std::nullopt : std::optional(room + Seconds{0.001});
    }
    return Seconds(left % minutes{1} + milliseconds{1});
}

} // namespace selvane::SessionNote
