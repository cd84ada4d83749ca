#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QString>

/// The strokes that heatmaps and their key have in common. Lengths in pixels of the window.
namespace selvane::HeatmapPainting {

/// How strongly the primary colour fills a square of this level, from 0 to 4.
[[nodiscard]] double opacityOfLevel(int level);

/// How many pixels of the screen there are to one of the window.
[[nodiscard]] double scaleOf(const QPainter& painter);

/// Fills a square whose corners bend continuously.
void fillSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& color);
/// Draws a line of width 1 along the inside of such a square.
void outlineSquare(QPainter& painter, QPointF corner, double side, double radius, const QColor& color);

/// The program's font in the size of the labels.
[[nodiscard]] QFont labelFont();
/// The baseline that puts a label's capitals in the middle between `top` and `top` + `height`.
[[nodiscard]] double baseline(double top, double height, double scale);

} // namespace selvane::HeatmapPainting
