#pragma once

#include <cstddef>

namespace selvane {

/// Asks the system to back a large, fresh block of memory with large pages, which spares most of the faults
/// of its first use. A hint: small blocks are left alone, and nothing happens where it can't be followed.
void preferHugePages(void* start, std::size_t length);

} // namespace selvane
