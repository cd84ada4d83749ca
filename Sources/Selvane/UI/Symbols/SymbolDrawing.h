#pragma once

#include <QPainterPath>
#include <QString>

#include <vector>

namespace selvane {

/// One symbol as it was drawn: outlines on a square grid, not yet of any weight, size or colour. A plain
/// value.
struct SymbolDrawing {
    /// The side of the grid, in its own units. Ink stays half a unit away from its edges.
    static constexpr double side = 24.0;
    /// The width that strokes have in the drawings where it is to be the weight's own.
    static constexpr double strokeWidth = 2.0;

    struct Shape {
        /// On the grid; y downward.
        QPainterPath path;
        bool filled;
        /// The width of the stroke around `path`, in widths of the weight; 0 for none.
        double strokes;
        /// Takes ink away.
        bool erases;

        bool operator==(const Shape&) const = default;
    };

    /// From the bottom to the top.
    std::vector<Shape> shapes;
    /// How many of the last shapes are parts.
    int parts = 0;

    bool operator==(const SymbolDrawing&) const = default;

    /// Reads a file that `save` wrote. Any other, and one that isn't there, gives a drawing without shapes.
    [[nodiscard]] static SymbolDrawing fromFile(const QString& path);
    /// False if the file can't be written. It is for this version of the program only.
    [[nodiscard]] bool save(const QString& path) const;
};

} // namespace selvane
