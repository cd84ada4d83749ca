#include "Selvane/Platform/Linux/ItemPicture.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace selvane {

namespace {

/// Lays a picture over another of the same height.
void paste(const Picture& from, int left, Picture& into) {
    for (int y = 0; y < from.height; ++y) {
        const auto row = from.argb.begin() + static_cast<std::ptrdiff_t>(y) * from.width;
        std::copy(row, row + from.width,
                  into.argb.begin() + static_cast<std::ptrdiff_t>(y) * into.width + left);
    }
}

} // namespace

std::string ItemPicture::words() const {
    return imageSide(1) > 0 ? " " + _look.title : _look.title;
}

int ItemPicture::imageSide(int height) const {
    return _look.image && _look.company == ItemLook::Company::image ? height : 0;
}

int ItemPicture::titledWidth(int height) const {
    return _look.title.empty() ? 0 : imageSide(height) + _drawing->width(words(), height);
}

Picture ItemPicture::drawTitled(int height, Ink ink) const {
    const Picture words = _drawing->draw(this->words(), height, ink);
    const int side = imageSide(height);
    Picture result{side + words.width, height, {}};
    result.argb.resize(static_cast<std::size_t>(result.width) * static_cast<std::size_t>(height));
    if (side > 0)
        paste(drawImage(side, ink), 0, result);
    paste(words, side, result);
    return result;
}

Picture ItemPicture::drawImage(int side, Ink ink) const {
    if (!_look.image)
        return {};
    Pixmap pixmap = _look.image->pixmap(side, ink);
    return {pixmap.side, pixmap.side, std::move(pixmap.argb)};
}

} // namespace selvane
