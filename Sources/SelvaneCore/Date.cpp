#include "SelvaneCore/Date.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace selvane {

namespace {

using Ticks = std::int64_t;

Ticks saturatingSum(Ticks a, Ticks b) {
    Ticks sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? std::numeric_limits<Ticks>::max() : std::numeric_limits<Ticks>::min();
}

/// 2^63 is exact as a float, while the largest tick isn't: everything at or past it saturates.
Ticks toTicks(double microseconds) {
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(microseconds))
        return 0;
    if (microseconds >= limit)
        return std::numeric_limits<Ticks>::max();
    if (microseconds <= -limit)
        return std::numeric_limits<Ticks>::min();
    return static_cast<Ticks>(std::round(microseconds));
}

} // namespace

Date adding(Seconds length, Date date) {
    const Ticks ticks = toTicks(length.count() * 1e6);
    return Date{Date::duration{saturatingSum(date.time_since_epoch().count(), ticks)}};
}

Seconds elapsed(Date start, Date end) {
    Ticks difference = 0;
    if (!__builtin_sub_overflow(end.time_since_epoch().count(), start.time_since_epoch().count(),
                                &difference))
        return std::chrono::microseconds{difference};
    return Seconds{end.time_since_epoch()} - Seconds{start.time_since_epoch()};
}

} // namespace selvane
