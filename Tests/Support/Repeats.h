#pragma once

#include <algorithm>

namespace selvane::test {

/// How often a test with random data goes on: `count` times, and a tenth of that, but at least once, under a
/// sanitizer, where everything takes ten times as long. Seeds are fixed, so the rest is never seen by one.
template <typename Count>
constexpr Count repeats(Count count) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return std::max<Count>(count / 10, 1);
#else
    return count;
#endif
}

} // namespace selvane::test
