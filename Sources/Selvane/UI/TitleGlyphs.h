#pragma once

#include "Selvane/Platform/TitleDrawing.h"

#include <memory>

namespace selvane {

/// Draws words in the application's font, in the size that belongs to the dial of the same height. All digits
/// are equally wide, so that a time stands still while it counts. Needs a QGuiApplication; finds the font
/// when it is first asked, and again for another height or after the application was given another font.
class TitleGlyphs final : public TitleDrawing {
public:
    TitleGlyphs();
    ~TitleGlyphs() override;

    [[nodiscard]] int width(const std::string& words, int height) const override;
    [[nodiscard]] Picture draw(const std::string& words, int height, Ink ink) const override;

private:
    friend class TitleGlyphsPeer;
    class Cells;

    [[nodiscard]] const Cells& cells(int height) const;

    /// Of the height that was asked for last, which is the same at each tick.
    mutable std::unique_ptr<Cells> _cells;
    mutable int _fontSearches = 0;
};

} // namespace selvane
