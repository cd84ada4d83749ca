#pragma once

#include "SelvaneCore/Models.h"

namespace selvane {

/// The order of every list of usage: most seconds first, equal seconds by name, as `Text::compare` orders
/// them. A strict weak order for all floats, so that any record can be sorted; what is not a number comes
/// before everything if its sign is plus, and last otherwise. Sort stably: entries with equal seconds and
/// names rank alike.
[[nodiscard]] bool ranksBefore(const AppUsage& left, const AppUsage& right);

} // namespace selvane
