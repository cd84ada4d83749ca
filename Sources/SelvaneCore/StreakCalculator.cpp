#include "SelvaneCore/StreakCalculator.h"

#include <algorithm>
#include <optional>

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

} // namespace

StreakResult compute(const MinutesByDay& minutesByDay, int goalMinutes, DayKey today, bool freezesEnabled,
                     const Calendar& calendar) {
    // 1. and 2. What a day must reach.
    const int goal = std::max(goalMinutes, 1);
    const auto isMet = [&](const DayKey& day) {
        const auto entry = minutesByDay.find(day);
        return entry != minutesByDay.end() && entry->second >= goal;
    };

    // 3. The first met day.
    std::optional<DayKey> first;
    for (const auto& [day, minutes] : minutesByDay) {
        if (minutes >= goal && (!first || day < *first))
            first = day;
    }
    // 3. and 4. Nothing to walk.
    if (!first || today < *first)
        return StreakResult::empty();

    // 5. and 6. All days before today.
    StreakResult result;
    for (DayKey day = *first; day < today; day = day.adding(1, calendar)) {
        if (isMet(day))
            addMetDay(result, freezesEnabled);
        else
            addMissedDay(result, day, freezesEnabled);
    }

    // 7. Today only adds.
    result.todayMet = isMet(today);
    if (result.todayMet)
        addMetDay(result, freezesEnabled);
    return result;
}

} // namespace selvane::StreakCalculator
