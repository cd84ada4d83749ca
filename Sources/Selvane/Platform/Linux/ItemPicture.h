#pragma once

#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/Platform/TitleDrawing.h"

#include <memory>
#include <string>
#include <utility>

namespace selvane {

/// What a status item looks like: an image alone, or, where there is the room for it, words with or without
/// the image before them. Panels without that room show the image. Keeps no pixels. Main thread.
class ItemPicture {
public:
    /// What words are shown with.
    enum class Company { image, nothing };

    /// `drawing` outlives the picture.
    explicit ItemPicture(const TitleDrawing& drawing) : _drawing(&drawing) {}

    void setImage(std::shared_ptr<const TemplateImage> image) { _image = std::move(image); }
    /// Empty words are none.
    void setTitle(std::string title, Company company);

    [[nodiscard]] const std::shared_ptr<const TemplateImage>& image() const { return _image; }

    /// How wide the item is with its words, in a panel of that height; 0 if it has none.
    [[nodiscard]] int titledWidth(int height) const;
    /// The item with its words.
    [[nodiscard]] Picture drawTitled(int height, Ink ink) const;
    /// The image alone; empty if there is none.
    [[nodiscard]] Picture drawImage(int side, Ink ink) const;

private:
    /// With the blank that parts them from the image.
    [[nodiscard]] std::string words() const;
    [[nodiscard]] int imageSide(int height) const;

    const TitleDrawing* _drawing;
    std::shared_ptr<const TemplateImage> _image;
    std::string _title;
    Company _company = Company::image;
};

} // namespace selvane
