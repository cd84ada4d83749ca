#pragma once

/// The measures of the bar, in pixels of the window.
namespace selvane::BarGeometry {

inline constexpr double width = 220;
inline constexpr double height = 12;
inline constexpr double trackHeight = 8;
inline constexpr double headSize = 12;

/// How wide the fill is in a track of this width: at least a whole capsule, of which as much is there as of
/// the head.
[[nodiscard]] double fillWidth(double progress, double headPresence, double trackWidth);

/// Where the head begins, from the leading edge.
[[nodiscard]] double headOffset(double fillWidth);

} // namespace selvane::BarGeometry
