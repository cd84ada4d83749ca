#pragma once

#include "Selvane/Platform/TitleDrawing.h"

namespace selvane {

/// Draws words in the application's font, in the size that belongs to the dial of the same height. All digits
/// are equally wide, so that a time stands still while it counts. Needs a QGuiApplication; finds the font
/// when it is first asked.
class TitleGlyphs final : public TitleDrawing {
public:
    [[nodiscard]] int width(const std::string& words, int height) const override;
    [[nodiscard]] Picture draw(const std::string& words, int height, Ink ink) const override;
};

} // namespace selvane
