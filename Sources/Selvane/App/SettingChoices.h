#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace selvane {

/// How the panel draws the time that is left.
enum class TimerStyle { ring, bar, minimal };
/// What the status area shows while a phase is under way.
enum class MenuBarDisplay { iconAndTime, iconOnly, timeOnly };
enum class AppearanceMode { system, light, dark };
/// How much of what lies behind the panel shines through.
enum class GlassLevel { off, low, medium, high };
/// Who plays during focus.
enum class MusicSource { ambient, appleMusic, spotify, none };
enum class AmbientSound { rain, white, pink, brown };
/// What the guard does about a distraction in front.
enum class FocusGuardMode { off, track, nudge, hide };

/// True for the modes that speak or act when a distraction comes in front.
[[nodiscard]] bool reactsToDrift(FocusGuardMode mode);

/// The names of a choice's cases in files, in the order of the cases, in which they are offered too. A name
/// is also its case's identity.
template <typename Choice>
inline constexpr std::array<std::string_view, 0> rawValues{};

template <>
inline constexpr std::array<std::string_view, 3> rawValues<TimerStyle>{"ring", "bar", "minimal"};
template <>
inline constexpr std::array<std::string_view, 3> rawValues<MenuBarDisplay>{"iconAndTime", "iconOnly",
                                                                           "timeOnly"};
template <>
inline constexpr std::array<std::string_view, 3> rawValues<AppearanceMode>{"system", "light", "dark"};
template <>
inline constexpr std::array<std::string_view, 4> rawValues<GlassLevel>{"off", "low", "medium", "high"};
template <>
inline constexpr std::array<std::string_view, 4> rawValues<MusicSource>{"ambient", "appleMusic", "spotify",
                                                                        "none"};
template <>
inline constexpr std::array<std::string_view, 4> rawValues<AmbientSound>{"rain", "white", "pink", "brown"};
template <>
inline constexpr std::array<std::string_view, 4> rawValues<FocusGuardMode>{"off", "track", "nudge", "hide"};

/// An enumeration that a setting chooses from.
template <typename T>
concept SettingChoice = std::is_enum_v<T> && !rawValues<T>.empty();

/// Every case of a choice, in order.
template <SettingChoice Choice>
inline constexpr auto allCases = [] {
    std::array<Choice, rawValues<Choice>.size()> cases{};
    for (std::size_t index = 0; index < cases.size(); ++index)
        cases[index] = static_cast<Choice>(index);
    return cases;
}();

template <SettingChoice Choice>
[[nodiscard]] constexpr std::string_view rawValue(Choice choice) {
    return rawValues<Choice>[static_cast<std::size_t>(choice)];
}

/// The case of that name; absent for any other text.
template <SettingChoice Choice>
[[nodiscard]] constexpr std::optional<Choice> fromRawValue(std::string_view text) {
    const auto found = std::ranges::find(rawValues<Choice>, text);
    if (found == rawValues<Choice>.end())
        return std::nullopt;
    return static_cast<Choice>(found - rawValues<Choice>.begin());
}

/// The names of the symbols that stand for focus and for breaks, in the order in which they are offered.
inline constexpr std::array<std::string_view, 18> symbolChoices{"eye",
                                                                "brain.head.profile",
                                                                "flame",
                                                                "bolt",
                                                                "target",
                                                                "leaf",
                                                                "book",
                                                                "pencil",
                                                                "laptopcomputer",
                                                                "headphones",
                                                                "paintbrush.pointed",
                                                                "sparkles",
                                                                "sun.max",
                                                                "moon",
                                                                "heart",
                                                                "cup.and.saucer",
                                                                "figure.walk",
                                                                "music.note"};

} // namespace selvane
