#pragma once

#include <QPainterPath>
#include <QString>

#include <vector>

namespace selvane {

/// One symbol as it was drawn: outlines on a square grid, not yet of any weight, size or colour. A plain
/// value.
///
/// The files are SVG of the size of the grid. Black is ink; a white stroke or fill takes the ink away again
/// that lies below it, also under heavier weights. Widths of strokes are relative to `strokeWidth`, which
/// stands for the weight. Parts that can light up one after another are the last elements of the file, with
/// the ids "part1", "part2" and so on, one element each.
struct SymbolDrawing {
    /// The side of the grid, in its own units. Ink stays half a unit away from its edges.
    static constexpr double side = 24.0;
    /// The width of a stroke of the weight's own width in the files.
    static constexpr double strokeWidth = 2.0;

    struct Shape {
        /// On the grid; y downward.
        QPainterPath path;
        bool filled;
        /// The width of the stroke around `path`, in widths of the weight; 0 for none.
        double strokes;
        /// Takes ink away.
        bool erases;
    };

    /// From the bottom to the top.
    std::vector<Shape> shapes;
    /// How many of the last shapes are parts.
    int parts = 0;

    /// Reads a file. A file that can't be read, or isn't SVG, gives a drawing without shapes.
    [[nodiscard]] static SymbolDrawing fromFile(const QString& path);
};

} // namespace selvane
