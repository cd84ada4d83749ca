#pragma once

// How failing tests write places on the screen.

#include "Selvane/Platform/StatusItemHost.h"

#include <ostream>

namespace selvane {

inline void PrintTo(const ScreenPoint& point, std::ostream* out) {
    *out << point.x << ',' << point.y;
}

inline void PrintTo(const ScreenRect& area, std::ostream* out) {
    *out << area.width << 'x' << area.height << '+' << area.x << '+' << area.y;
}

} // namespace selvane
