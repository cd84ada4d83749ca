#pragma once

#include <QColor>
#include <QPointF>

QT_FORWARD_DECLARE_CLASS(QPainter)

/// The glowing tip of the arc and of the bar.
namespace selvane::ArcHead {

/// How far the glow reaches beyond the disc.
inline constexpr double glowReach = 9;

/// Paints a disc of this diameter with its glow.
void paint(QPainter& painter, QPointF centre, double size, QColor ink);

/// How strong the glow is at a distance from the middle of a disc of this radius.
[[nodiscard]] double glow(double distance, double radius);

} // namespace selvane::ArcHead
