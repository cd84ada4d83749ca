#include "SelvaneCore/DurationPreset.h"

#include <algorithm>

namespace selvane {

std::optional<DurationPreset> DurationPreset::matching(int focus, int shortBreak, int longBreak) {
    const auto* const found = std::ranges::find(all, DurationPreset(focus, shortBreak, longBreak));
    if (found == all.end())
        return std::nullopt;
    return *found;
}

MinuteRange DurationPreset::range(Phase phase) {
    switch (phase) {
    case Phase::focus:
        return {1, 120};
    case Phase::shortBreak:
    case Phase::longBreak:
        return {1, 60};
    }
    __builtin_unreachable();
}

std::string DurationPreset::id() const {
    return std::to_string(focusMinutes) + '/' + std::to_string(shortBreakMinutes) + '/' +
           std::to_string(longBreakMinutes);
}

std::string DurationPreset::title() const {
    return std::to_string(focusMinutes) + " / " + std::to_string(shortBreakMinutes);
}

std::string DurationPreset::summary() const {
    return std::to_string(focusMinutes) + " min focus, " + std::to_string(shortBreakMinutes) +
           " min breaks, " + std::to_string(longBreakMinutes) + " min long break";
}

} // namespace selvane
