#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"

#include <absl/time/civil_time.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace selvane::test {

/// The calendar of a named zone. The test stops with an error if the system doesn't have it.
[[nodiscard]] inline Calendar zone(std::string_view name) {
    const std::optional<Calendar> found = Calendar::named(name);
    if (!found)
        throw std::runtime_error("no time zone " + std::string(name));
    return *found;
}

/// The instant of a date and time in UTC.
[[nodiscard]] inline Date utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    using namespace std::chrono;
    return sys_days{std::chrono::year{year} / month / day} + hours{hour} + minutes{minute} + seconds{second};
}

/// The instant of a local date and time.
[[nodiscard]] inline Date local(const Calendar& calendar, int year, int month, int day, int hour = 0,
                                int minute = 0, int second = 0) {
    return calendar.date(absl::CivilSecond(year, month, day, hour, minute, second));
}

} // namespace selvane::test
