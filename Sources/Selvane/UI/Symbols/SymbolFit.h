#pragma once

#include "Selvane/UI/Symbols/SymbolDrawing.h"

#include <QPainterPath>
#include <QSize>

#include <vector>

namespace selvane {

/// Places a drawing on pixels, so that it stays crisp when a pixel is half a stroke: straight horizontal and
/// vertical strokes, dots, and the outermost points of larger curves, come to lie on whole pixels, and what
/// lies between moves along. Nothing moves by more than half a pixel; what is symmetrical about the middle of
/// the grid stays so. A plain value.
class SymbolFit {
public:
    /// `scale`: pixels for a unit of the grid. `strokeWidth`: that of a stroke of the weight's own width, in
    /// pixels.
    SymbolFit(const SymbolDrawing& drawing, double scale, double strokeWidth);

    /// Pixels around the grid, for ink that is moved or made heavier.
    static constexpr int margin = 2;

    /// The whole grid in pixels and the margin on each side: a square.
    [[nodiscard]] QSize size() const { return QSize(_pixels, _pixels); }

    /// A path of the grid in pixels.
    [[nodiscard]] QPainterPath place(const QPainterPath& path) const;

private:
    enum class Direction { horizontal, vertical };

    /// A coordinate of the grid that should fall on pixels.
    struct Guide {
        double unit;
        /// Where the sharp thing lies from there, in pixels: the edge of a filled shape, or 0 for a stroke
        /// that is to be sharp as a whole.
        double toEdge;
        /// That stroke covers an odd number of pixels, so its middle is the middle of one.
        bool isOdd;
    };

    /// A coordinate that is fixed, and where it lies.
    struct Stop {
        double unit;
        double pixel;
    };

    /// Ascending.
    using Stops = std::vector<Stop>;

    [[nodiscard]] static std::vector<Guide> guides(const SymbolDrawing& drawing, Direction direction,
                                                   double strokeWidth);
    [[nodiscard]] Stops stops(std::vector<Guide> guides) const;
    [[nodiscard]] double place(double unit, const Stops& stops) const;

    double _scale;
    int _pixels;
    Stops _x;
    Stops _y;
};

} // namespace selvane
