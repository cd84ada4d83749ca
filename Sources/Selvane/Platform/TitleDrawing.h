#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <cstdint>
#include <string>
#include <vector>

namespace selvane {

/// A picture of any shape: pixels as 0xAARRGGBB, not premultiplied, rows from the top.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> argb;
    friend bool operator==(const Picture&, const Picture&) = default;
};

/// Draws words in one colour, for status areas that show pictures only. Main thread.
class TitleDrawing {
public:
    virtual ~TitleDrawing() = default;

    /// How wide the words are beside an image of `height` pixels. The same for any digits.
    [[nodiscard]] virtual int width(const std::string& words, int height) const = 0;
    /// The words, as wide as `width` says and `height` high.
    [[nodiscard]] virtual Picture draw(const std::string& words, int height, Ink ink) const = 0;
};

} // namespace selvane
