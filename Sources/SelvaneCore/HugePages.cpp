#include "SelvaneCore/HugePages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdint>

namespace selvane {

void preferHugePages(void* start, std::size_t length) {
    // Below a few large pages the memory that they round up to would weigh more than the faults.
    constexpr std::size_t smallest = std::size_t{8} << 20;
    if (length < smallest)
        return;
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto address = std::bit_cast<std::uintptr_t>(start);
    const std::uintptr_t first = (address + page - 1) / page * page;
    const std::uintptr_t last = (address + length) / page * page;
    static_cast<void>(::madvise(std::bit_cast<void*>(first), last - first, MADV_HUGEPAGE));
}

} // namespace selvane
