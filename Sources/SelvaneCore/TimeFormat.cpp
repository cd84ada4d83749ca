#include "SelvaneCore/TimeFormat.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace selvane::TimeFormat {

namespace {

/// Rounded up, not below zero. A length that is not a number is none; the longest is 2^53 seconds.
std::int64_t wholeSeconds(Seconds length) {
    constexpr double longest = 9007199254740992.0;
    const double seconds = std::ceil(length.count());
    if (!(seconds > 0.0))
        return 0;
    return static_cast<std::int64_t>(seconds < longest ? seconds : longest);
}

} // namespace

std::string clock(Seconds length) {
    const long long seconds = wholeSeconds(length);
    std::array<char, 32> text{};
    const int written =
        seconds >= 3600 ? std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", seconds / 3600,
                                        seconds / 60 % 60, seconds % 60)
                        : std::snprintf(text.data(), text.size(), "%lld:%02lld", seconds / 60, seconds % 60);
    return std::string(text.data(), static_cast<std::size_t>(written));
}

std::string duration(int minutes) {
    const int hours = minutes / 60;
    const int rest = minutes % 60;
    if (hours == 0)
        return std::to_string(rest) + "m";
    if (rest == 0)
        return std::to_string(hours) + "h";
    return std::to_string(hours) + "h " + std::to_string(rest) + "m";
}

} // namespace selvane::TimeFormat
