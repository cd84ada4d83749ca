#pragma once

#include "Selvane/App/CalendarWatcher.h"
#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/FocusScore.h"
#include "SelvaneCore/Models.h"

#include <QLocale>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace selvane {

class AppModel;

/// The one line under the task picker. Several conditions can apply at once and only one can show: the
/// decision, as a function of values.
///
/// A failure to save and a recovery stand first until the data has its own place to tell of them: nothing
/// else in the program would, and what may be lost matters more than what distracts.
namespace SessionNote {

/// What a click on a note does.
enum class Action { openFocusPane, dismissRecoveryNotice };

/// Whether a note only tells, or warns of a loss.
enum class Urgency { note, alert };

struct Note {
    /// The name of a symbol; empty for none.
    QString symbol;
    QString text;
    /// In the primary colour instead of the secondary.
    bool emphasized = false;
    std::optional<Action> action = std::nullopt;
    Urgency urgency = Urgency::note;

    friend bool operator==(const Note&, const Note&) = default;
};

enum class Timer { idle, running, paused };

/// Everything that the decision reads.
struct State {
    Date now{};
    Phase phase = Phase::focus;
    Timer timer = Timer::idle;
    Seconds remaining{};
    bool sessionWasShortened = false;
    std::optional<std::string> saveError;
    /// What recovery has to tell and the user hasn't dismissed.
    std::optional<std::string> recoveryNotice;
    std::optional<std::string> driftAppName;
    bool focusModeEnabled = false;
    std::optional<std::string> focusModeProblem;
    std::optional<std::string> focusModeError;
    std::optional<CalendarEvent> nextEvent;
    bool fitSessionsToCalendar = true;
    /// The configured length of a focus phase.
    Seconds focusDuration{};
    Seconds meetingBuffer{};
    std::optional<std::vector<AppUsage>> lastUsage;
    DistractingSet distracting;
};

/// The present state of a model, with a recovery notice if there is one.
[[nodiscard]] State state(const AppModel& model);

/// The first of these that has something to tell: a failure to save, a recovery, a drift, Do Not Disturb, the
/// next meeting, the last session. Absent if none has. Times of day are local to `calendar`, in the short
/// form of `locale`.
[[nodiscard]] std::optional<Note> note(const State& state, const Calendar& calendar, const QLocale& locale);

/// When the note may read differently although nothing but the time has changed: the time from now until
/// then, above zero. Absent if it depends on no clock, or if the timer's own ticks keep it up to date.
[[nodiscard]] std::optional<Seconds> timeToChange(const State& state);

} // namespace SessionNote

} // namespace selvane
