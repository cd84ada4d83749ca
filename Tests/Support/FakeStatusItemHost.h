#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace selvane::test {

/// A status area in memory: a test looks at what it shows and clicks it.
///
///     FakeStatusItemHost host;
///     host.click();
///     EXPECT_TRUE(host.isHighlighted());
class FakeStatusItemHost final : public StatusItemHost {
public:
    void setContent(const StatusItemContent& content) override {
        if (_content && *_content == content)
            return;
        _content = content;
        ++_drawings;
    }
    void setAccessibilityLabel(const std::string& label) override { _accessibilityLabel = label; }
    void setTooltip(const std::string& text) override { _tooltip = text; }
    void setMenu(const std::vector<StatusMenuEntry>& entries) override { _menu = entries; }
    void setHighlighted(bool highlighted) override { _isHighlighted = highlighted; }
    [[nodiscard]] StatusItemAnchor anchor() const override { return _anchor; }

    /// Puts the item somewhere; without a place the desktop doesn't tell one.
    void place(const StatusItemAnchor& anchor) { _anchor = anchor; }

    void click() {
        if (onActivate)
            onActivate(_anchor);
    }
    void middleClick() {
        if (onSecondaryActivate)
            onSecondaryActivate();
    }
    /// Chooses the enabled line of the menu with this label. False if there is none.
    bool choose(const std::string& label) {
        const auto found = std::ranges::find(_menu, label, &StatusMenuEntry::label);
        if (label.empty() || found == _menu.end() || !found->isEnabled)
            return false;
        // Choosing may set the menu anew.
        const int id = found->id;
        if (onMenuEntry)
            onMenuEntry(id);
        return true;
    }

    /// Empty before the first content.
    [[nodiscard]] const std::optional<StatusItemContent>& content() const { return _content; }
    /// How often the content became another one.
    [[nodiscard]] int drawings() const { return _drawings; }
    [[nodiscard]] const std::string& accessibilityLabel() const { return _accessibilityLabel; }
    [[nodiscard]] const std::string& tooltip() const { return _tooltip; }
    [[nodiscard]] const std::vector<StatusMenuEntry>& menu() const { return _menu; }
    [[nodiscard]] bool isHighlighted() const { return _isHighlighted; }

private:
    std::optional<StatusItemContent> _content;
    int _drawings = 0;
    std::string _accessibilityLabel;
    std::string _tooltip;
    std::vector<StatusMenuEntry> _menu;
    bool _isHighlighted = false;
    StatusItemAnchor _anchor;
};

} // namespace selvane::test
