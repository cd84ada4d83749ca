#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <cstdint>

namespace selvane {

/// The colour of an ink as 0xRRGGBB.
constexpr std::uint32_t inkColor(Ink ink) {
    switch (ink) {
    case Ink::dark:
        return 0x1c1c1e;
    case Ink::light:
        return 0xffffff;
    }
    __builtin_unreachable();
}

} // namespace selvane
