#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace selvane {

/// What a window takes of one edge of an X11 screen: so many pixels from that edge, from `start` to `end`
/// along it, both included. As told by the property _NET_WM_STRUT_PARTIAL.
struct Strut {
    enum class Edge { left, right, top, bottom };

    Edge edge;
    int depth;
    int start;
    int end;
    friend bool operator==(const Strut&, const Strut&) = default;
};

/// The four of a property's value, which holds twelve numbers; nothing of another value.
[[nodiscard]] std::optional<std::array<Strut, 4>> strutsOf(std::span<const std::uint32_t> values);

/// What the struts leave of `monitor`, on an X11 screen of that size. A strut that would leave nothing, such
/// as that of a bar between two monitors, counts for none.
[[nodiscard]] ScreenRect withoutStruts(const ScreenRect& monitor, std::span<const Strut> struts,
                                       int screenWidth, int screenHeight);

/// What bars leave of `area`, the free part of `monitor`, without having told of it: bars at an edge between
/// two monitors, or at one that isn't the screen's own, have no struts. Of `docks`, the windows that are bars
/// or look like them, those count that lie flat along an edge of the monitor; short ones only if they are
/// shallow.
[[nodiscard]] ScreenRect withoutDocks(const ScreenRect& area, const ScreenRect& monitor,
                                      std::span<const ScreenRect> docks);

} // namespace selvane
