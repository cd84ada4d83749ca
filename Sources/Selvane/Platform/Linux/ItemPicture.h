#pragma once

#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/Platform/TitleDrawing.h"

#include <memory>
#include <string>
#include <utility>

namespace selvane {

/// What a status item shows. Images are compared by identity.
struct ItemLook {
    /// What the title is shown with.
    enum class Company { image, nothing };

    std::shared_ptr<const TemplateImage> image;
    Ink ink = Ink::light;
    /// Empty for none.
    std::string title;
    Company company = Company::image;

    friend bool operator==(const ItemLook&, const ItemLook&) = default;
};

/// What a status item looks like: an image alone, or, where there is the room for it, words with or without
/// the image before them. Panels without that room show the image. Keeps no pixels. Main thread.
class ItemPicture {
public:
    /// `drawing` outlives the picture.
    explicit ItemPicture(const TitleDrawing& drawing) : _drawing(&drawing) {}

    void setLook(ItemLook look) { _look = std::move(look); }
    [[nodiscard]] const ItemLook& look() const { return _look; }

    /// How wide the item is with its words, beside an image of that height; 0 if it has none.
    [[nodiscard]] int titledWidth(int height) const;
    /// The item with its words, in an ink that may be another than the look's.
    [[nodiscard]] Picture drawTitled(int height, Ink ink) const;
    /// The image alone; empty if there is none.
    [[nodiscard]] Picture drawImage(int side, Ink ink) const;

private:
    /// With the blank that parts them from the image.
    [[nodiscard]] std::string words() const;
    [[nodiscard]] int imageSide(int height) const;

    const TitleDrawing* _drawing;
    ItemLook _look;
};

} // namespace selvane
