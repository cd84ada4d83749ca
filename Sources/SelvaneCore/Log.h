#pragma once

#include <string_view>

namespace selvane::Log {

/// Writes one plain line that begins "Selvane: " to standard error, where a desktop session has its log, for
/// failures that the user can't act on. Line breaks and other control characters in `message` become blanks.
/// Any thread; never fails.
void line(std::string_view message);

} // namespace selvane::Log
