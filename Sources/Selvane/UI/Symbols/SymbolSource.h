#pragma once

#include "Selvane/UI/Symbols/SymbolDrawing.h"

#include <QString>

/// The drawings as they are drawn: SVG of the size of the grid. Black is ink; a white stroke or fill takes
/// the ink away again that lies below it, also under heavier weights. Widths of strokes are relative to
/// `SymbolDrawing::strokeWidth`, which stands for the weight. Parts that can light up one after another are
/// the last elements of the file, with the ids "part1", "part2" and so on, one element each.
namespace selvane::SymbolSource {

/// Reads a file. A file that can't be read, or isn't SVG, gives a drawing without shapes.
[[nodiscard]] SymbolDrawing read(const QString& path);

} // namespace selvane::SymbolSource
