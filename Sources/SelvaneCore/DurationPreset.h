#pragma once

#include "SelvaneCore/Models.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace selvane {

/// A closed range of whole minutes.
struct MinuteRange {
    int lowest;
    int highest;

    [[nodiscard]] constexpr bool contains(int minutes) const {
        return lowest <= minutes && minutes <= highest;
    }

    /// The nearest number in the range.
    [[nodiscard]] constexpr int clamp(int minutes) const { return std::clamp(minutes, lowest, highest); }

    friend bool operator==(const MinuteRange&, const MinuteRange&) = default;
};

/// Lengths of the three phases that the settings offer in one step, in whole minutes.
struct DurationPreset {
    int focusMinutes;
    int shortBreakMinutes;
    int longBreakMinutes;

    /// The preset of these three lengths, which are not checked.
    constexpr DurationPreset(int focus, int shortBreak, int longBreak)
        : focusMinutes(focus), shortBreakMinutes(shortBreak), longBreakMinutes(longBreak) {}

    /// Every preset, in the order in which they are offered.
    static const std::array<DurationPreset, 4> all;

    /// The preset with exactly these lengths; absent if there is none.
    [[nodiscard]] static std::optional<DurationPreset> matching(int focus, int shortBreak, int longBreak);

    /// The lengths that the settings allow for `phase`.
    [[nodiscard]] static MinuteRange range(Phase phase);

    /// Its identity, as in "25/5/15".
    [[nodiscard]] std::string id() const;
    /// Its short name, as in "25 / 5"; the long break goes without saying.
    [[nodiscard]] std::string title() const;
    /// Its lengths in words, as in "25 min focus, 5 min breaks, 15 min long break".
    [[nodiscard]] std::string summary() const;

    friend bool operator==(const DurationPreset&, const DurationPreset&) = default;
};

inline constexpr std::array<DurationPreset, 4> DurationPreset::all{
    DurationPreset(25, 5, 15), DurationPreset(45, 15, 30), DurationPreset(50, 10, 30),
    DurationPreset(90, 20, 30)};

} // namespace selvane
