#pragma once

#include <cstddef>

namespace selvane::HeapRoom {

/// Lets the heap grow by so many bytes at once, with the memory in place: got page by page, as it is first
/// used, it costs several times the time. What isn't used goes back with the next `malloc_trim`. Takes about
/// half a millisecond for a megabyte. Main thread, whose heap it is. A heap that is made later for another
/// thread has its first two megabytes of addresses from the start, and doesn't ask for them page by page
/// either.
///
/// For GNU's C library, and for good, as the first call decides: blocks of up to that size come from the heap
/// from then on, which grows by two megabytes of addresses more than is asked for, and up to twice as much
/// stays free at its end until someone trims it. Where it is told not to do so, nothing is won.
void make(std::size_t bytes);

} // namespace selvane::HeapRoom
