#pragma once

#include <cstdlib>
#include <memory>

namespace selvane {

struct XcbReplyDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or an event that xcb allocated, freed as xcb wants it.
template <typename T>
using XcbReply = std::unique_ptr<T, XcbReplyDeleter>;

} // namespace selvane
