#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/MinutesByDay.h"

#include <absl/container/flat_hash_set.h>

namespace selvane {

/// What a heatmap shows: the focus of days, graded against the daily goal.
struct HeatmapDays {
    MinutesByDay minutesByDay;
    /// The days on which a streak freeze was spent.
    absl::flat_hash_set<DayKey> frozenDays;
    /// The daily goal in minutes.
    int goal;
    /// The user's present day.
    DayKey today;
    Calendar calendar;

    friend bool operator==(const HeatmapDays&, const HeatmapDays&) = default;
};

} // namespace selvane
