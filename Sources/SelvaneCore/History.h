#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/FocusScore.h"
#include "SelvaneCore/MinutesByDay.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/RunningTally.h"
#include "SelvaneCore/Stats.h"
#include "SelvaneCore/StreakCalculator.h"
#include "SelvaneCore/Tallies.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace selvane {

/// The user's sessions in the order in which they were recorded, and every figure that is shown of them.
///
/// The figures are those of `Stats` and `StreakCalculator` for these sessions, to the last bit. The history
/// remembers how far it has counted, so that a figure that is asked again costs what was appended since, and
/// nothing else can happen to it: any other change makes a new history, which counts from the start.
///
/// A value for one thread: asking for a figure goes on counting.
class History {
public:
    /// What a streak depends on beside the sessions.
    struct StreakQuestion {
        int goalMinutes;
        DayKey today;
        bool freezesEnabled;
        int dayStartHour;
        Calendar calendar;

        friend bool operator==(const StreakQuestion&, const StreakQuestion&) = default;
    };

    History() = default;
    explicit History(std::vector<FocusSession> sessions);
    History(const History&) = default;
    History& operator=(const History&) = default;
    /// What is left behind is empty, and has no figures.
    History(History&& other) noexcept;
    History& operator=(History&& other) noexcept;
    ~History() = default;

    void append(FocusSession session);

    [[nodiscard]] const std::vector<FocusSession>& sessions() const { return _sessions; }

    /// Valid until the next question or change.
    [[nodiscard]] const MinutesByDay& focusMinutesByDay(int dayStartHour, const Calendar& calendar) const;
    [[nodiscard]] Stats::Summary summary(const Calendar& calendar) const;
    [[nodiscard]] std::vector<AppUsage> appTotals(Date since) const;
    [[nodiscard]] std::optional<double> averageFocusScore(const DistractingSet& distracting,
                                                          Date since) const;
    [[nodiscard]] StreakResult streak(const StreakQuestion& question) const;

private:
    struct KnownStreak {
        StreakQuestion question;
        std::size_t sessions;
        StreakResult result;
    };

    std::vector<FocusSession> _sessions;
    mutable RunningTally<Tallies::FocusMinutesByDay> _minutesByDay;
    mutable RunningTally<Tallies::Summary> _summary;
    /// The day that is shown in the panel, and the period that is shown in the window.
    mutable RunningTally<Tallies::AppTotals, 2> _appTotals;
    mutable std::optional<KnownStreak> _streak;
};

} // namespace selvane
