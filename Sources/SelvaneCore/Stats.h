#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/FocusScore.h"
#include "SelvaneCore/MinutesByDay.h"
#include "SelvaneCore/Models.h"

#include <optional>
#include <span>
#include <vector>

namespace selvane {

/// Every figure that is shown of the history, each a pure function of the sessions.
///
/// Only focus sessions count, completed or not, each with the time that really ran. A session belongs wholly
/// to the day and hour of its start. Minutes are whole: truncated once, after summing in the order of the
/// sessions.
namespace Stats {

struct Summary {
    int totalFocusMinutes = 0;
    /// Focus sessions that ran to their end.
    int completedFocusSessions = 0;
    /// The mean length of a focus session, also of those that were stopped early.
    int averageSessionMinutes = 0;
    /// The local hour, 0 to 23, with the most focus time; absent without a focus session. Of equal hours the
    /// earlier one.
    std::optional<int> mostProductiveHour;

    friend bool operator==(const Summary&, const Summary&) = default;
};

/// Focus minutes by day. A day with less than a minute of focus has an entry of 0.
[[nodiscard]] MinutesByDay focusMinutesByDay(std::span<const FocusSession> sessions, int dayStartHour,
                                             const Calendar& calendar);

/// The heatmap's grade of a day, 0 to 4: nothing, below half the goal, below the goal, below twice the goal,
/// and from twice the goal on. A goal below 1 counts as 1.
[[nodiscard]] int heatLevel(int minutes, int goal);

[[nodiscard]] Summary summary(std::span<const FocusSession> sessions, const Calendar& calendar);

/// The usage of the focus sessions that started at or after `since`, one entry per identifier, without time
/// away. An entry keeps the name that was met first. Most seconds first, equal seconds by name.
[[nodiscard]] std::vector<AppUsage> appTotals(std::span<const FocusSession> sessions, Date since);

/// The focus score of `appTotals`, so weighted by time.
[[nodiscard]] std::optional<double> averageFocusScore(std::span<const FocusSession> sessions,
                                                      const DistractingSet& distracting, Date since);

} // namespace Stats

} // namespace selvane
