#pragma once

#include "SelvaneCore/DurationPreset.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/SettingValue.h"

#include <algorithm>
#include <array>
#include <string>

namespace selvane {

/// The steps in which stored settings are mended, in order.
enum class SettingRepair { integers, symbols, volume, playlists, applications, sites };

inline constexpr std::array allSettingRepairs{SettingRepair::integers,     SettingRepair::symbols,
                                              SettingRepair::volume,       SettingRepair::playlists,
                                              SettingRepair::applications, SettingRepair::sites};

/// What a stored setting has to be, beyond its type, to be used.
template <typename T>
struct SettingRule {
    SettingRepair step;
    /// Makes any value one that holds to the rule, given the setting's default. One that does stays as it is.
    T (*mend)(const T& value, const T& initial);
};

/// The rules, named after what they ask for.
namespace Valid {

/// The nearest number in the closed range.
template <int lowest, int highest>
inline constexpr SettingRule<int> within{
    SettingRepair::integers, [](const int& value, const int&) { return std::clamp(value, lowest, highest); }};

/// The nearest number of minutes that the phase may take.
template <Phase phase>
inline constexpr SettingRule<int> minutesOf{SettingRepair::integers, [](const int& value, const int&) {
                                                return DurationPreset::range(phase).clamp(value);
                                            }};

/// One of `symbolChoices` or empty, else the default.
extern const SettingRule<std::string> symbol;

/// From 0 to 1, else the default.
extern const SettingRule<double> volume;

/// At most 300 characters; the rest is cut off.
extern const SettingRule<std::string> playlist;

/// At most 200 different identifiers of 1 to 255 characters.
extern const SettingRule<SettingValue::Texts> applications;

/// At most 200 different website rules in their normal form.
extern const SettingRule<SettingValue::Texts> sites;

} // namespace Valid

} // namespace selvane
