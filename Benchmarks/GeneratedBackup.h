#pragma once

#include "SelvaneCore/Date.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace selvane::benchmarks {

/// After every session of a generated history that fits into a backup.
inline constexpr Date afterAll = std::chrono::sys_days{std::chrono::year{2100} / 1 / 1};

/// The bytes of a backup document of that size, nearly all of them sessions.
[[nodiscard]] std::string generatedBackup(std::size_t size);

} // namespace selvane::benchmarks
