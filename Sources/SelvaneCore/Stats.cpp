#include "SelvaneCore/Stats.h"

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <compare>
#include <cstddef>
#include <limits>

namespace selvane::Stats {

namespace {

constexpr std::size_t hoursPerDay = 24;

/// Truncated towards zero; what doesn't fit becomes the nearest number that does.
int wholeMinutes(Seconds length) {
    const double minutes = length.count() / 60.0;
    if (std::isnan(minutes))
        return 0;
    return static_cast<int>(
        std::clamp<double>(minutes, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

bool counts(const FocusSession& session) {
    return session.phase == Phase::focus;
}

/// Most seconds first, then by name. A total order for all floats, so that sorting is safe with any record.
bool ranksBefore(const AppUsage& a, const AppUsage& b) {
    const auto order = std::weak_order(b.seconds.count(), a.seconds.count());
    return order != 0 ? order < 0 : a.name < b.name;
}

} // namespace

MinutesByDay focusMinutesByDay(std::span<const FocusSession> sessions, int dayStartHour,
                               const Calendar& calendar) {
    absl::flat_hash_map<DayKey, Seconds> totals;
    for (const FocusSession& session : sessions) {
        if (counts(session))
            totals.try_emplace(DayKey(session.start, dayStartHour, calendar), 0.0).first->second +=
                session.actualSeconds;
    }

    MinutesByDay result;
    result.reserve(totals.size());
    for (const auto& [day, total] : totals)
        result.emplace(day, wholeMinutes(total));
    return result;
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
    Summary result;
    Seconds total{0.0};
    std::size_t count = 0;
    std::array<std::optional<Seconds>, hoursPerDay> buckets{};
    for (const FocusSession& session : sessions) {
        if (!counts(session))
            continue;
        ++count;
        total += session.actualSeconds;
        auto& bucket = buckets[static_cast<std::size_t>(calendar.civil(session.start).hour())];
        bucket = bucket.value_or(Seconds{0.0}) + session.actualSeconds;
        if (session.completed)
            ++result.completedFocusSessions;
    }
    if (count == 0)
        return result;

    result.totalFocusMinutes = wholeMinutes(total);
    result.averageSessionMinutes = wholeMinutes(total / static_cast<double>(count));
    std::optional<Seconds> most;
    for (std::size_t hour = 0; hour < hoursPerDay; ++hour) {
        if (buckets[hour] && (!most || *buckets[hour] > *most)) {
            most = buckets[hour];
            result.mostProductiveHour = static_cast<int>(hour);
        }
    }
    return result;
}

std::vector<AppUsage> appTotals(std::span<const FocusSession> sessions, Date since) {
    std::vector<AppUsage> totals;
    absl::flat_hash_map<absl::string_view, std::size_t> places;
    for (const FocusSession& session : sessions) {
        if (!counts(session) || session.start < since || !session.apps)
            continue;
        for (const AppUsage& usage : *session.apps) {
            if (usage.isAway())
                continue;
            const auto [place, isNew] = places.try_emplace(usage.bundleID, totals.size());
            if (isNew)
                totals.push_back(AppUsage{usage.bundleID, usage.name, Seconds{0.0}});
            totals[place->second].seconds += usage.seconds;
        }
    }
    std::ranges::stable_sort(totals, ranksBefore);
    return totals;
}

std::optional<double> averageFocusScore(std::span<const FocusSession> sessions,
                                        const DistractingSet& distracting, Date since) {
    return FocusScore::compute(appTotals(sessions, since), distracting);
}

} // namespace selvane::Stats
