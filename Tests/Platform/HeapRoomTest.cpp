#include "Selvane/Platform/Linux/HeapRoom.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <ios>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
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

/// The bytes that may be written without asking the kernel, from a block on.
std::size_t writableFrom(const void* block) {
    std::ifstream maps("/proc/self/maps");
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    std::string rights;
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        char hyphen = 0;
        if (words >> std::hex >> begin >> hyphen >> end >> rights && begin <= address && address < end)
            return rights.starts_with("rw") ? end - address : 0;
    }
    return 0;
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

TEST(HeapRoomDeathTest, NewHeapOfAThreadNeedNotAskPageByPage) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // In a process of its own no thread has left its heap to another.
    EXPECT_EXIT(
        {
            HeapRoom::make(4U << 20U);
            std::size_t bytes = 0;
            std::thread([&bytes] {
                const std::unique_ptr<void, Free> block(std::malloc(1));
                bytes = writableFrom(block.get());
            }).join();
            std::exit(bytes > std::size_t{1} << 20U ? EXIT_SUCCESS : EXIT_FAILURE);
        },
        testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace
} // namespace selvane
