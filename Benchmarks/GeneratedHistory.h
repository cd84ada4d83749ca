#pragma once

#include "SelvaneCore/Models.h"

#include <cstddef>
#include <vector>

namespace selvane::benchmarks {

/// Years of use, the same in every run: `count` focus sessions in the order of their starts, 6,000 a year,
/// with up to two applications each.
[[nodiscard]] std::vector<FocusSession> generatedHistory(std::size_t count);

} // namespace selvane::benchmarks
