#pragma once

#include "Selvane/Platform/Monitor.h"
#include "Selvane/Platform/StatusItemHost.h"

/// Where the panel stands on the screen.
namespace selvane::PanelPlacement {

/// The least distance from the panel to the left and right edge of the screen.
inline constexpr int edgeMargin = 8;
/// The distance between the panel and the status item.
inline constexpr int itemGap = 6;
/// The room that a panel's shadow takes on each side of it.
inline constexpr int shadowMargin = 32;

/// The top left corner of a panel of `width` times `height` that belongs to `anchor`, on a screen whose area
/// free of docks is `available`. Centred on the item, on the side of it that has the room. With no anchor the
/// panel takes the top right corner, where most desktops have their status area. All in one unit.
[[nodiscard]] ScreenPoint origin(const StatusItemAnchor& anchor, int width, int height,
                                 const ScreenRect& available);

/// A place for a panel that knows of no item: the end of the bar in which the status area most likely is. On
/// a screen `whole`, of which the bars leave `available`. With a bar at the top or with none it is empty.
[[nodiscard]] StatusItemAnchor endOfBar(const ScreenRect& whole, const ScreenRect& available);

/// Whether the anchor's item, or else its pointer, lies on the monitor. False for an empty anchor.
[[nodiscard]] bool isOn(const Monitor& monitor, const StatusItemAnchor& anchor);

/// An anchor in pixels as one in the units of windows.
[[nodiscard]] StatusItemAnchor scaled(const StatusItemAnchor& anchor, const Monitor& monitor);

/// An area in pixels as one in the units of windows.
[[nodiscard]] ScreenRect scaled(const ScreenRect& area, const Monitor& monitor);

} // namespace selvane::PanelPlacement
