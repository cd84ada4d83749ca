#include "Selvane/Platform/Linux/HeapRoom.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace selvane {
namespace {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

/// How many whole pages of a new block of that size are in memory before it is used.
std::size_t pagesInPlace(std::size_t bytes) {
    const std::unique_ptr<void, Free> block(std::malloc(bytes));
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block.get());
    const std::uintptr_t begin = (address + page - 1) / page * page;
    const std::uintptr_t end = (address + bytes) / page * page;
    std::vector<unsigned char> state((end - begin) / page);
    EXPECT_EQ(mincore(reinterpret_cast<void*>(begin), end - begin, state.data()), 0);
    std::size_t count = 0;
    for (const unsigned char flags : state)
        count += flags & 1U;
    return count;
}

TEST(HeapRoomTest, IsThereBeforeItIsUsed) {
    constexpr std::size_t bytes = 3U << 20U;
    // What another test has left.
    malloc_trim(0);
    EXPECT_LT(pagesInPlace(bytes), 8U);
    HeapRoom::make(4U << 20U);
    const auto pages = bytes / static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    EXPECT_GE(pagesInPlace(bytes), pages - 1);
}

} // namespace
} // namespace selvane
