#pragma once

// How failing tests write the core's values. Included wherever such values are compared, so that all tests of
// a program agree on it.

#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/SessionFit.h"
#include "SelvaneCore/Stats.h"
#include "SelvaneCore/StreakCalculator.h"

#include <ostream>
#include <set>

namespace selvane {

inline void PrintTo(Phase phase, std::ostream* out) {
    *out << rawValue(phase);
}

inline void PrintTo(const DayKey& key, std::ostream* out) {
    *out << key.description();
}

inline void PrintTo(const AppUsage& usage, std::ostream* out) {
    *out << usage.bundleID << " (" << usage.name << ") " << usage.seconds.count() << " s";
}

inline void PrintTo(const SessionFit& fit, std::ostream* out) {
    switch (fit.kind()) {
    case SessionFit::Kind::shorten:
        *out << "shorten to " << fit.length()->count() << " s";
        return;
    case SessionFit::Kind::fits:
        *out << "fits";
        return;
    case SessionFit::Kind::noRoom:
        *out << "no room";
        return;
    }
}

inline void PrintTo(const StreakResult& result, std::ostream* out) {
    *out << "current " << result.current << ", longest " << result.longest << ", freezes "
         << result.freezesAvailable << ", frozen";
    for (const DayKey& day : std::set<DayKey>(result.frozenDays.begin(), result.frozenDays.end()))
        *out << ' ' << day.description();
    *out << (result.todayMet ? ", today met" : ", today not met");
}

namespace Stats {

inline void PrintTo(const Summary& summary, std::ostream* out) {
    *out << summary.totalFocusMinutes << " min, " << summary.completedFocusSessions << " completed, average "
         << summary.averageSessionMinutes << " min, hour " << summary.mostProductiveHour.value_or(-1);
}

} // namespace Stats

} // namespace selvane
