#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <QString>

#include <vector>

/// The row of dashes that tells where the phase stands in the cycle.
namespace selvane::CycleDash {

enum class Look {
    /// Over, or a long break, in which everything is.
    full,
    /// Under way; its opacity comes and goes.
    pulsing,
    /// Next, or under way where nothing may move.
    current,
    ahead
};

enum class Pulse { moving, still };

/// Less than a third of the way from one end of the pulse to the other. A dash is small and faint: finer
/// steps are hardly seen, but cost a frame each.
inline constexpr Seconds pulseStep{0.41};

/// A dash for each focus phase of the set, at least one. The position counts from 1; beyond the length every
/// dash is full.
[[nodiscard]] std::vector<Look> row(Phase phase, int position, int length, Pulse pulse);

/// How opaque a dash is; a pulsing one so long after its pulse began.
[[nodiscard]] double opacity(Look look, Seconds sinceStart);

/// "Session 2 of 4"
[[nodiscard]] QString label(int position, int length);
/// "Session 2 of 4 before a long break"
[[nodiscard]] QString tooltip(int position, int length);

} // namespace selvane::CycleDash
