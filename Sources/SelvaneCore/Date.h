#pragma once

#include <chrono>

namespace selvane {

/// An instant of the wall clock in whole microseconds since 1970-01-01 UTC. Integers, so that an instant plus
/// 1,500 seconds minus the instant is exactly 1,500 seconds.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// A length of time as a 64-bit float. May be negative.
using Seconds = std::chrono::duration<double>;

/// An instant before anything that can be recorded: 0001-01-01 00:00:00 UTC.
inline constexpr Date distantPast = std::chrono::sys_days{std::chrono::year{1} / 1 / 1};

/// The instant `length` after `date`, rounded to the nearest microsecond with halves away from zero. A sum
/// that doesn't fit stops at the first or last instant; a length that is not a number adds nothing.
[[nodiscard]] Date adding(Seconds length, Date date);

/// The time from `start` to `end`, negative if `end` lies before `start`.
[[nodiscard]] Seconds elapsed(Date start, Date end);

} // namespace selvane
