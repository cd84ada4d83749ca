#include "SelvaneCore/Date.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace selvane {

namespace {

using Ticks = std::int64_t;

/// Wide enough for the sum of any instant and any length that can matter to it.
using WideTicks = __int128;

/// A length past twice the range of instants leads out of it from anywhere, so it may stop there.
WideTicks toTicks(double microseconds) {
    constexpr double limit = 36893488147419103232.0;
    if (std::isnan(microseconds))
        return 0;
    return static_cast<WideTicks>(std::round(std::clamp(microseconds, -limit, limit)));
}

} // namespace

Date adding(Seconds length, Date date) {
    const WideTicks sum = date.time_since_epoch().count() + toTicks(length.count() * 1e6);
    const WideTicks fitting =
        std::clamp<WideTicks>(sum, std::numeric_limits<Ticks>::min(), std::numeric_limits<Ticks>::max());
    return Date{Date::duration{static_cast<Ticks>(fitting)}};
}

Seconds elapsed(Date start, Date end) {
    Ticks difference = 0;
    if (!__builtin_sub_overflow(end.time_since_epoch().count(), start.time_since_epoch().count(),
                                &difference))
        return std::chrono::microseconds{difference};
    return Seconds{end.time_since_epoch()} - Seconds{start.time_since_epoch()};
}

} // namespace selvane
