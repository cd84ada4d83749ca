#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/MinutesByDay.h"

#include <absl/container/flat_hash_set.h>

namespace selvane {

/// How the user's streak stands. Everything counts met days; a frozen day only bridges a gap.
struct StreakResult {
    /// The running count. While today is not met, the count up to yesterday.
    int current = 0;
    /// The highest running count that was ever reached.
    int longest = 0;
    /// Freezes held now, from 0 to `StreakCalculator::maxFreezes`.
    int freezesAvailable = 0;
    /// Every day on which a freeze was spent, also where the streak broke later.
    absl::flat_hash_set<DayKey> frozenDays;
    /// Today's minutes reached the goal.
    bool todayMet = false;

    /// The result without a single met day.
    [[nodiscard]] static StreakResult empty() { return {}; }

    friend bool operator==(const StreakResult&, const StreakResult&) = default;
};

/// Turns focus minutes by day into the streak. Nothing of a streak is stored: it is computed afresh, so that
/// a changed goal or history rewrites the past consistently.
namespace StreakCalculator {

/// A freeze is earned each time that the running count reaches a multiple of this.
inline constexpr int daysPerFreeze = 7;
/// The most freezes that are held at once.
inline constexpr int maxFreezes = 2;

/// Walks from the first met day to `today`. A day is met with at least `goalMinutes`, and always with at
/// least one minute. With freezes, a missed day spends one, if there is one, instead of ending the run. Today
/// is still under way: missed, it neither ends the run nor spends a freeze. Days after `today` play no part.
[[nodiscard]] StreakResult compute(const MinutesByDay& minutesByDay, int goalMinutes, DayKey today,
                                   bool freezesEnabled, const Calendar& calendar);

} // namespace StreakCalculator

} // namespace selvane
