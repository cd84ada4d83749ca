#pragma once

#include "Selvane/Platform/StatusItemHost.h"

/// Where the panel stands on the screen.
namespace selvane::PanelPlacement {

/// The least distance from the panel to the left and right edge of the screen.
inline constexpr int edgeMargin = 8;
/// The distance between the panel and the status item.
inline constexpr int itemGap = 6;

/// The top left corner of a panel of `width` times `height` that belongs to `anchor`, on a screen whose area
/// free of docks is `available`. Centred on the item, on the side of it that has the room. With no anchor the
/// panel takes the top right corner, where most desktops have their status area. All in one unit.
[[nodiscard]] ScreenPoint origin(const StatusItemAnchor& anchor, int width, int height,
                                 const ScreenRect& available);

} // namespace selvane::PanelPlacement
