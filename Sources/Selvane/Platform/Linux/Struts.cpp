#include "Selvane/Platform/Linux/Struts.h"

#include <algorithm>

namespace selvane {

namespace {

bool overlap(int start, int end, int from, int length) {
    return start < from + length && end >= from;
}

/// Takes what lies before `from` or behind `to` away from a side of a rectangle, unless nothing would be
/// left.
void narrow(int& start, int& length, int from, int to) {
    const int first = std::max(start, from);
    const int last = std::min(start + length, to);
    if (last <= first)
        return;
    start = first;
    length = last - first;
}

/// A bar is no deeper than this share of the monitor.
constexpr int deepestBar = 4;
/// A window that covers less than this share of an edge, such as a meter in a corner, is a bar only if it is
/// no deeper than that share of the monitor's shorter side, such as a tray.
constexpr int shortestBar = 4;
constexpr int deepestShortBar = 16;

/// Whether two edges are the same one. Some bars leave a pixel free.
bool meet(int edge, int other) {
    return edge - other <= 1 && other - edge <= 1;
}

/// Takes a bar away that lies at the beginning or at the end of a side of the monitor. It covers `reach` of
/// the `edge` there.
void narrow(int& start, int& length, int bar, int depth, int from, int side, int reach, int edge) {
    const bool isShort = reach * shortestBar < edge;
    if (depth * deepestBar > side || (isShort && depth * deepestShortBar > std::min(side, edge)))
        return;
    if (meet(bar, from))
        narrow(start, length, bar + depth, from + side);
    else if (meet(bar + depth, from + side))
        narrow(start, length, from, bar);
}

} // namespace

std::optional<std::array<Strut, 4>> strutsOf(std::span<const std::uint32_t> values) {
    constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top, Strut::Edge::bottom};
    // X11 has no screens of more pixels.
    constexpr std::uint32_t most = 65535;
    if (values.size() != 12 || std::ranges::any_of(values, [](std::uint32_t value) { return value > most; }))
        return std::nullopt;
    std::array<Strut, 4> struts{};
    for (std::size_t side = 0; side < struts.size(); ++side) {
        struts[side] = {edges[side], static_cast<int>(values[side]), static_cast<int>(values[4 + 2 * side]),
                        static_cast<int>(values[5 + 2 * side])};
    }
    return struts;
}

ScreenRect withoutStruts(const ScreenRect& monitor, std::span<const Strut> struts, int screenWidth,
                         int screenHeight) {
    ScreenRect left = monitor;
    for (const auto& [edge, depth, start, end] : struts) {
        const bool isUpright = edge == Strut::Edge::left || edge == Strut::Edge::right;
        if (depth == 0 || !overlap(start, end, isUpright ? monitor.y : monitor.x,
                                   isUpright ? monitor.height : monitor.width))
            continue;
        switch (edge) {
        case Strut::Edge::left:
            narrow(left.x, left.width, depth, screenWidth);
            break;
        case Strut::Edge::right:
            narrow(left.x, left.width, 0, screenWidth - depth);
            break;
        case Strut::Edge::top:
            narrow(left.y, left.height, depth, screenHeight);
            break;
        case Strut::Edge::bottom:
            narrow(left.y, left.height, 0, screenHeight - depth);
            break;
        }
    }
    return left;
}

ScreenRect withoutDocks(const ScreenRect& area, const ScreenRect& monitor,
                        std::span<const ScreenRect> docks) {
    ScreenRect left = area;
    for (const auto& [x, y, width, height] : docks) {
        if (!overlap(x, x + width - 1, monitor.x, monitor.width) ||
            !overlap(y, y + height - 1, monitor.y, monitor.height))
            continue;
        if (width >= height)
            narrow(left.y, left.height, y, height, monitor.y, monitor.height, width, monitor.width);
        else
            narrow(left.x, left.width, x, width, monitor.x, monitor.width, height, monitor.height);
    }
    return left;
}

} // namespace selvane
