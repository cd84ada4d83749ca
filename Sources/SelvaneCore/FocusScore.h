#pragma once

#include "SelvaneCore/Models.h"

#include <optional>
#include <set>
#include <span>
#include <string>

namespace selvane {

/// The identifiers of what distracts the user, applications and "site:" entries alike.
using DistractingSet = std::set<std::string>;

namespace FocusScore {

/// The share, from 0 to 1, of the time that was not spent on distractions. Time away counts on neither side.
/// Absent if less than a second is left to judge by, or more than a float can hold. Not rounded.
[[nodiscard]] std::optional<double> compute(std::span<const AppUsage> apps,
                                            const DistractingSet& distracting);

} // namespace FocusScore

} // namespace selvane
