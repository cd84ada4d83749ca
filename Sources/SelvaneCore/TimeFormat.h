#pragma once

#include "SelvaneCore/Date.h"

#include <string>

/// The two short forms in which times are written everywhere. Not localised.
namespace selvane::TimeFormat {

/// The countdown form, "25:00", or "1:02:05" from an hour on. Rounds up, so that it reaches "0:00" only at
/// the end; negative lengths are "0:00".
[[nodiscard]] std::string clock(Seconds length);

/// The form of totals, "45m", "2h" or "1h 30m". A negative total carries its sign on each part.
[[nodiscard]] std::string duration(int minutes);

} // namespace selvane::TimeFormat
