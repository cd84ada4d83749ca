#pragma once

#include "Selvane/Platform/TitleDrawing.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace selvane::test {

/// Words as bars of one colour, `light` or `dark` according to the ink: each character is half as wide as the
/// bar is high. Remembers what was drawn last.
class PlainTitles final : public TitleDrawing {
public:
    PlainTitles(std::uint32_t dark, std::uint32_t light) : _dark(dark), _light(light) {}

    [[nodiscard]] int width(const std::string& words, int height) const override {
        return static_cast<int>(words.size()) * height / 2;
    }
    [[nodiscard]] Picture draw(const std::string& words, int height, Ink ink) const override {
        drawn = words;
        drawnHeight = height;
        const int columns = width(words, height);
        return {columns, height,
                std::vector<std::uint32_t>(static_cast<std::size_t>(columns * height),
                                           ink == Ink::light ? _light : _dark)};
    }

    mutable std::string drawn;
    mutable int drawnHeight = 0;

private:
    std::uint32_t _dark;
    std::uint32_t _light;
};

} // namespace selvane::test
