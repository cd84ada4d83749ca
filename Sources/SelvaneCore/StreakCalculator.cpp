#include "SelvaneCore/StreakCalculator.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace selvane::StreakCalculator {

namespace {

void addMetDay(StreakResult& result, bool freezesEnabled) {
    ++result.current;
    if (freezesEnabled && result.current % daysPerFreeze == 0)
        result.freezesAvailable = std::min(result.freezesAvailable + 1, maxFreezes);
    result.longest = std::max(result.longest, result.current);
}

void addMissedDay(StreakResult& result, const DayKey& day, bool freezesEnabled) {
    if (result.current >= 1 && freezesEnabled && result.freezesAvailable >= 1) {
        result.frozenDays.insert(day);
        --result.freezesAvailable;
    } else {
        result.current = 0;
    }
}

/// The first of the sorted days after `day` that the zone has: a day that it skipped is never walked on.
std::optional<DayKey> nextDayOf(const std::vector<DayKey>& days, const DayKey& day,
                                const Calendar& calendar) {
    const auto isInZone = [&calendar](const DayKey& each) { return each.adding(0, calendar) == each; };
    const auto found = std::find_if(std::ranges::upper_bound(days, day), days.end(), isInZone);
    return found == days.end() ? std::nullopt : std::optional(*found);
}

} // namespace

StreakResult compute(const MinutesByDay& minutesByDay, int goalMinutes, DayKey today, bool freezesEnabled,
                     const Calendar& calendar) {
    // 1. and 2. What a day must reach.
    const int goal = std::max(goalMinutes, 1);
    const auto isMet = [&](const DayKey& day) {
        const auto entry = minutesByDay.find(day);
        return entry != minutesByDay.end() && entry->second >= goal;
    };

    // 3. The met days, first of all the first.
    std::vector<DayKey> met;
    for (const auto& [day, minutes] : minutesByDay) {
        if (minutes >= goal)
            met.push_back(day);
    }
    std::ranges::sort(met);
    // 3. and 4. Nothing to walk.
    if (met.empty() || today < met.front())
        return StreakResult::empty();

    // 5. and 6. All days before today. Without a run a missed day changes nothing, so there the walk goes on
    // with the next met day: a single session long ago doesn't cost all the days since.
    StreakResult result;
    for (DayKey day = met.front(); day < today;) {
        if (isMet(day))
            addMetDay(result, freezesEnabled);
        else
            addMissedDay(result, day, freezesEnabled);
        day = result.current > 0 ? day.adding(1, calendar) : nextDayOf(met, day, calendar).value_or(today);
    }

    // 7. Today only adds.
    result.todayMet = isMet(today);
    if (result.todayMet)
        addMetDay(result, freezesEnabled);
    return result;
}

} // namespace selvane::StreakCalculator
