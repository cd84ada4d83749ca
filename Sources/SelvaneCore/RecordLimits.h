#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

/// What a record can be. A backup is refused if it holds another, wherever it comes from, so whatever the
/// program records must keep to this.
namespace selvane::RecordLimits {

/// No session began before.
inline constexpr Date earliestStart = std::chrono::sys_days{std::chrono::year{2000} / 1 / 1};
/// How far ahead of the present a session may begin: clocks are set wrong, and zones mistaken.
inline constexpr std::chrono::seconds mostAhead{86'400};
/// The longest length of a session, and of an application's share of it.
inline constexpr Seconds longest{86'400.0};
/// The longest identifier or name of an application, in user-perceived characters.
inline constexpr std::size_t maxAppTextLength = 300;
inline constexpr std::int64_t maxEstimatedPomodoros = 1'000;
inline constexpr std::int64_t maxCompletedPomodoros = 100'000;

/// The session with the smallest changes that make it one that can be, as seen at `now`. A start outside the
/// window becomes its nearer end, and an end before the start becomes the start. Lengths and names are cut;
/// bytes of a name that are no text become U+FFFD.
[[nodiscard]] FocusSession fitted(FocusSession session, Date now);

} // namespace selvane::RecordLimits
