#include "Selvane/Platform/Linux/HeapRoom.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace selvane::HeapRoom {

namespace {

/// About what the thread that reads the views takes, in bytes. Less than what the kernel may give in one
/// piece, as it would to each thread at its first byte.
constexpr int threadRoom = (2 << 20) - (64 << 10);

} // namespace

void make(std::size_t bytes) {
    // The first lies outside the heap. Once it has been freed, the C library takes blocks of its size from
    // the heap, and keeps twice as much free at the heap's end. Volatile, or the compiler leaves them out.
    void* volatile block = std::malloc(bytes);
    std::free(block);
    block = std::malloc(bytes);
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(block) / page * page;
    // A kernel that doesn't know the request leaves all as it was.
    if (block)
        madvise(reinterpret_cast<void*>(begin), bytes, MADV_POPULATE_WRITE);
    std::free(block);
    // Last: from here on the C library learns no size from what is freed.
    mallopt(M_TOP_PAD, threadRoom);
}

} // namespace selvane::HeapRoom
