#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace selvane::test {

/// An image of one colour: `light` or `dark` according to the ink. Counts how often it was drawn.
class PlainImage final : public TemplateImage {
public:
    PlainImage(std::uint32_t dark, std::uint32_t light) : _dark(dark), _light(light) {}

    [[nodiscard]] Pixmap pixmap(int side, Ink ink) const override {
        ++drawings;
        return {side, std::vector<std::uint32_t>(static_cast<std::size_t>(side * side),
                                                 ink == Ink::light ? _light : _dark)};
    }

    [[nodiscard]] bool resembles(const TemplateImage& other) const override {
        return this == &other || &other == like;
    }

    mutable int drawings = 0;
    /// The image that it resembles.
    const TemplateImage* like = nullptr;

private:
    std::uint32_t _dark;
    std::uint32_t _light;
};

} // namespace selvane::test
