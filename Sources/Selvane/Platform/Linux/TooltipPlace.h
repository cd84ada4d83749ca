#pragma once

#include "Selvane/Platform/StatusItemHost.h"

namespace selvane {

/// The top left corner of a tooltip of `width` times `height` that belongs to `item`: centred beside it, on
/// the side that looks to the middle of its monitor, and within that monitor.
[[nodiscard]] ScreenPoint tooltipCorner(const ScreenRect& item, int width, int height,
                                        const ScreenRect& monitor);

} // namespace selvane
