#include "SelvaneCore/DayKey.h"

#include <absl/hash/hash.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>

namespace selvane {

namespace {

constexpr int noonHour = 12;

DayKey toKey(absl::CivilDay day) {
    static const absl::CivilDay first(std::numeric_limits<int>::min(), 1, 1);
    static const absl::CivilDay last(std::numeric_limits<int>::max(), 12, 31);
    day = std::clamp(day, first, last);
    return DayKey(static_cast<int>(day.year()), day.month(), day.day());
}

/// The instant of an hour of a day, absent if instants don't reach that far.
std::optional<Date> instant(absl::CivilDay day, int hour, const Calendar& calendar) {
    const Date date = calendar.date(absl::CivilSecond(day) + std::int64_t{hour} * 3600);
    if (date == Date::min() || date == Date::max())
        return std::nullopt;
    return date;
}

absl::CivilDay civilDay(const DayKey& key) {
    return absl::CivilDay(key.year, key.month, key.day);
}

/// The day on which the noon of `day` really falls: another one if the zone skipped `day`.
absl::CivilDay dayOfNoon(absl::CivilDay day, const Calendar& calendar) {
    const std::optional<Date> noon = instant(day, noonHour, calendar);
    return noon ? absl::CivilDay(calendar.civil(*noon)) : day;
}

} // namespace

DayKey::DayKey(Date date, int dayStartHour, const Calendar& calendar)
    : DayKey(
          toKey(absl::CivilDay(calendar.civil(selvane::adding(-std::chrono::hours{dayStartHour}, date))))) {}

Date DayKey::date(const Calendar& calendar) const {
    return instant(civilDay(*this), noonHour, calendar).value_or(distantPast);
}

Date DayKey::start(int dayStartHour, const Calendar& calendar) const {
    return instant(civilDay(*this), dayStartHour, calendar).value_or(distantPast);
}

DayKey DayKey::adding(int days, const Calendar& calendar) const {
    absl::CivilDay target = dayOfNoon(civilDay(*this), calendar) + days;
    const int direction = days < 0 ? -1 : 1;
    // The noon of a skipped day falls on a day that was, or will be, visited by itself.
    while (dayOfNoon(target, calendar) != target)
        target += direction;
    return toKey(target);
}

int DayKey::weekday(const Calendar& calendar) const {
    constexpr int daysPerWeek = 7;
    const absl::Weekday weekday = absl::GetWeekday(dayOfNoon(civilDay(*this), calendar));
    // Abseil counts from Monday as 0.
    return (static_cast<int>(weekday) + 1) % daysPerWeek + 1;
}

std::string DayKey::description() const {
    std::array<char, 48> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", year, month, day);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

} // namespace selvane

std::size_t std::hash<selvane::DayKey>::operator()(const selvane::DayKey& key) const noexcept {
    return absl::HashOf(key);
}
