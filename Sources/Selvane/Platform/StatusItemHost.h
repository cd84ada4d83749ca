#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// A point or an area of the screen in the desktop's own pixels, x to the right and y downwards.
struct ScreenPoint {
    int x;
    int y;
    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};
struct ScreenRect {
    int x;
    int y;
    int width;
    int height;
    friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

/// The colour that a single-coloured drawing takes, chosen to stand out from the panel that it lies on.
enum class Ink { dark, light };

/// A square picture: `side` times `side` pixels as 0xAARRGGBB, not premultiplied, rows from the top.
struct Pixmap {
    int side;
    std::vector<std::uint32_t> argb;
    friend bool operator==(const Pixmap&, const Pixmap&) = default;
};

/// A single-coloured drawing that can be had at any size. Immutable.
class TemplateImage {
public:
    virtual ~TemplateImage() = default;
    [[nodiscard]] virtual Pixmap pixmap(int side, Ink ink) const = 0;
    /// Whether it is so much like `other` that a viewer may be left with that one.
    [[nodiscard]] virtual bool resembles(const TemplateImage& other) const { return this == &other; }
};

/// What the status area shows. Images are compared by identity.
struct StatusItemContent {
    std::shared_ptr<const TemplateImage> image;
    std::optional<std::string> title;
    /// Where no title can be shown, stands for one that would be shown alone.
    std::shared_ptr<const TemplateImage> substitute = {};
    friend bool operator==(const StatusItemContent&, const StatusItemContent&) = default;
};

/// One line of the item's menu; `label` is empty for a separator.
struct StatusMenuEntry {
    /// What `onMenuEntry` is called with. Unique within a menu, above zero, stable while the meaning is.
    int id;
    std::string label;
    bool isEnabled = true;
    friend bool operator==(const StatusMenuEntry&, const StatusMenuEntry&) = default;
};

/// Where the user clicked, as far as the host tells it.
struct StatusItemAnchor {
    std::optional<ScreenRect> icon;
    std::optional<ScreenPoint> pointer;
    friend bool operator==(const StatusItemAnchor&, const StatusItemAnchor&) = default;
};

/// One item in the status area of the desktop. Keeps what it was told and shows it whenever, and as long as,
/// the desktop has a place for it; without such a place everything is accepted and nothing is shown. Main
/// thread. Each setter may be called at every tick: an equal value costs nothing.
class StatusItemHost {
public:
    virtual ~StatusItemHost() = default;

    virtual void setContent(const StatusItemContent& content) = 0;
    /// The words for a screen reader.
    virtual void setAccessibilityLabel(const std::string& label) = 0;
    /// The words shown when the pointer rests on the item.
    virtual void setTooltip(const std::string& text) = 0;
    virtual void setMenu(const std::vector<StatusMenuEntry>& entries) = 0;
    /// Whether the item looks pressed, where the desktop can show that.
    virtual void setHighlighted(bool highlighted) = 0;

    /// Where the item is now, if it is shown and the desktop tells.
    [[nodiscard]] virtual StatusItemAnchor anchor() const = 0;

    /// The item was clicked.
    std::function<void(const StatusItemAnchor&)> onActivate;
    /// The item was clicked with the middle button.
    std::function<void()> onSecondaryActivate;
    /// A line of the menu was chosen; called with its `id`.
    std::function<void(int)> onMenuEntry;
};

} // namespace selvane
