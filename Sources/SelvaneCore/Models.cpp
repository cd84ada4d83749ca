#include "SelvaneCore/Models.h"

#include <algorithm>

namespace selvane {

namespace {

/// One second: no phase is ever shorter.
constexpr double shortestMinutes = 1.0 / 60.0;

double minutes(const TimerConfig& config, Phase phase) {
    switch (phase) {
    case Phase::focus:
        return config.focusMinutes;
    case Phase::shortBreak:
        return config.shortBreakMinutes;
    case Phase::longBreak:
        return config.longBreakMinutes;
    }
    __builtin_unreachable();
}

} // namespace

std::string_view rawValue(Phase phase) {
    switch (phase) {
    case Phase::focus:
        return "focus";
    case Phase::shortBreak:
        return "shortBreak";
    case Phase::longBreak:
        return "longBreak";
    }
    __builtin_unreachable();
}

std::optional<Phase> phaseFromRawValue(std::string_view text) {
    const auto* const found = std::ranges::find(allPhases, text, rawValue);
    if (found == allPhases.end())
        return std::nullopt;
    return *found;
}

std::string_view title(Phase phase) {
    switch (phase) {
    case Phase::focus:
        return "Focus";
    case Phase::shortBreak:
        return "Short Break";
    case Phase::longBreak:
        return "Long Break";
    }
    __builtin_unreachable();
}

bool isBreak(Phase phase) {
    switch (phase) {
    case Phase::focus:
        return false;
    case Phase::shortBreak:
    case Phase::longBreak:
        return true;
    }
    __builtin_unreachable();
}

Seconds TimerConfig::duration(Phase phase) const {
    const double planned = minutes(*this, phase);
    // Written so that a length that is not a number takes the shortest one too.
    return Seconds{(planned > shortestMinutes ? planned : shortestMinutes) * 60.0};
}

std::string AppUsage::siteID(std::string_view domain) {
    std::string result(sitePrefix);
    result += domain;
    return result;
}

std::optional<std::string> AppUsage::siteDomain() const {
    if (!bundleID.starts_with(sitePrefix))
        return std::nullopt;
    return bundleID.substr(sitePrefix.size());
}

} // namespace selvane
