#include "SelvaneCore/Tallies.h"

#include "SelvaneCore/AppUsageOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace selvane::Tallies {

namespace {

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

} // namespace

void FocusMinutesByDay::add(const FocusSession& session) {
    if (!counts(session))
        return;
    const DayKey key = _dayOf(session.start);
    if (!_open || _open->key != key) {
        settle();
        const auto known = _totals.find(key);
        _open = Day{key, known == _totals.end() ? Seconds{0.0} : known->second};
    }
    _open->total += session.actualSeconds;
}

void FocusMinutesByDay::settle() {
    if (!_open)
        return;
    _totals.insert_or_assign(_open->key, _open->total);
    _minutes.insert_or_assign(_open->key, wholeMinutes(_open->total));
}

const MinutesByDay& FocusMinutesByDay::answer() {
    settle();
    return _minutes;
}

void Summary::add(const FocusSession& session) {
    if (!counts(session))
        return;
    ++_count;
    _total += session.actualSeconds;
    auto& hour = _hours[static_cast<std::size_t>(_times.hour(session.start))];
    hour = hour.value_or(Seconds{0.0}) + session.actualSeconds;
    if (session.completed)
        ++_completed;
}

Stats::Summary Summary::answer() const {
    Stats::Summary result;
    if (_count == 0)
        return result;
    result.totalFocusMinutes = wholeMinutes(_total);
    result.completedFocusSessions = _completed;
    result.averageSessionMinutes = wholeMinutes(_total / static_cast<double>(_count));
    std::optional<Seconds> most;
    for (std::size_t hour = 0; hour < hoursPerDay; ++hour) {
        if (_hours[hour] && (!most || *_hours[hour] > *most)) {
            most = _hours[hour];
            result.mostProductiveHour = static_cast<int>(hour);
        }
    }
    return result;
}

void AppTotals::add(const FocusSession& session) {
    if (!counts(session) || session.start < _since || !session.apps)
        return;
    for (const AppUsage& usage : *session.apps) {
        if (usage.isAway())
            continue;
        const auto [place, isNew] = _places.try_emplace(usage.bundleID, _totals.size());
        if (isNew)
            _totals.push_back(AppUsage{usage.bundleID, usage.name, Seconds{0.0}});
        _totals[place->second].seconds += usage.seconds;
    }
}

std::vector<AppUsage> AppTotals::answer() const {
    std::vector<AppUsage> result = _totals;
    std::ranges::stable_sort(result, ranksBefore);
    return result;
}

} // namespace selvane::Tallies
