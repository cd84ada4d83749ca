#pragma once

#include "SelvaneCore/DayKey.h"

#include <absl/container/flat_hash_map.h>

namespace selvane {

/// Whole minutes of focus by day. Days without a focus session have no entry.
using MinutesByDay = absl::flat_hash_map<DayKey, int>;

} // namespace selvane
