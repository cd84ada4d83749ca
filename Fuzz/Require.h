#pragma once

#include <cstdlib>

namespace selvane {

/// Ends the program where something does not hold, so that the fuzzer keeps the input.
inline void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace selvane
