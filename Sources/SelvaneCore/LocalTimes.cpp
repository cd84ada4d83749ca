#include "SelvaneCore/LocalTimes.h"

#include <absl/time/civil_time.h>
#include <absl/time/time.h>

#include <algorithm>
#include <iterator>
#include <optional>

namespace selvane {

namespace {

constexpr Date firstKnown = distantPast;
/// The zones list their clock changes for 400 years from their last change of rules on. Later ones are known
/// for single instants, but aren't listed.
constexpr Date endOfKnown = std::chrono::sys_days{std::chrono::year{2300} / 1 / 1};

absl::Time toTime(Date date) {
    return absl::FromUnixMicros(date.time_since_epoch().count());
}

/// The instant at which clocks change from one local time to another. Absent where the zone's two ways of
/// telling it don't agree, which only changes in quicker succession than their own lengths could bring about;
/// no zone that is known has any.
std::optional<Date> instant(const absl::TimeZone::CivilTransition& change, const absl::TimeZone& zone) {
    const absl::Time time = zone.At(std::min(change.from, change.to)).trans;
    if (absl::ToCivilSecond(time, zone) != change.to ||
        absl::ToCivilSecond(time - absl::Seconds(1), zone) + 1 != change.from)
        return std::nullopt;
    return Date{Date::duration{absl::ToUnixMicros(time)}};
}

LocalTimes::Stretch lookUp(Date date, const absl::TimeZone& zone) {
    const absl::Time time = toTime(date);
    const std::chrono::seconds offset{zone.At(time).offset};
    LocalTimes::Stretch result{firstKnown, endOfKnown, offset};
    absl::TimeZone::CivilTransition change;
    // A change at this very second has happened.
    if (zone.PrevTransition(toTime(std::chrono::floor<std::chrono::seconds>(date) + std::chrono::seconds{1}),
                            &change))
        result.from = std::max(instant(change, zone).value_or(date), firstKnown);
    if (zone.NextTransition(time, &change))
        result.until = std::min(instant(change, zone).value_or(date + Date::duration{1}), endOfKnown);
    return result;
}

} // namespace

const LocalTimes::Stretch* LocalTimes::stretch(Date date) {
    if (_last.contains(date))
        return &_last;
    if (date < firstKnown || date >= endOfKnown)
        return nullptr;
    const auto after = _known.upper_bound(date);
    if (after != _known.begin() && std::prev(after)->second.contains(date)) {
        _last = std::prev(after)->second;
    } else {
        _last = lookUp(date, _calendar.zone());
        _known.insert_or_assign(_last.from, _last);
    }
    return &_last;
}

int LocalTimes::hour(Date date) {
    const Stretch* const stretch = this->stretch(date);
    if (!stretch)
        return _calendar.civil(date).hour();
    const Date local = date + stretch->offset;
    return static_cast<int>((local - std::chrono::floor<std::chrono::days>(local)) / std::chrono::hours{1});
}

} // namespace selvane
