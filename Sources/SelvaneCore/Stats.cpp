#include "SelvaneCore/Stats.h"

#include "SelvaneCore/Tallies.h"

#include <algorithm>

namespace selvane::Stats {

namespace {

template <typename Tally>
Tally counted(std::span<const FocusSession> sessions, const typename Tally::Question& question) {
    Tally tally(question);
    for (const FocusSession& session : sessions)
        tally.add(session);
    return tally;
}

} // namespace

MinutesByDay focusMinutesByDay(std::span<const FocusSession> sessions, int dayStartHour,
                               const Calendar& calendar) {
    return counted<Tallies::FocusMinutesByDay>(sessions, {dayStartHour, calendar}).answer();
}

int heatLevel(int minutes, int goal) {
    const double spent = minutes;
    const double target = std::max(goal, 1);
    if (spent < 1.0)
        return 0;
    if (spent < target / 2.0)
        return 1;
    if (spent < target)
        return 2;
    if (spent < 2.0 * target)
        return 3;
    return 4;
}

Summary summary(std::span<const FocusSession> sessions, const Calendar& calendar) {
    return counted<Tallies::Summary>(sessions, {calendar}).answer();
}

std::vector<AppUsage> appTotals(std::span<const FocusSession> sessions, Date since) {
    return counted<Tallies::AppTotals>(sessions, {since}).answer();
}

std::optional<double> averageFocusScore(std::span<const FocusSession> sessions,
                                        const DistractingSet& distracting, Date since) {
    return FocusScore::compute(appTotals(sessions, since), distracting);
}

} // namespace selvane::Stats
