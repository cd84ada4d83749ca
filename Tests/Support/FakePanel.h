#pragma once

#include "Selvane/UI/Panel.h"
#include "Support/Journal.h"

namespace selvane::test {

/// A panel without a window.
class FakePanel final : public Panel {
public:
    explicit FakePanel(Journal& journal) : _journal(journal) {}

    void show(const StatusItemAnchor& anchor) override {
        _journal.note("panel.show");
        _isVisible = true;
        _anchor = anchor;
    }
    void hide() override {
        _journal.note("panel.hide");
        _isVisible = false;
    }
    [[nodiscard]] bool isVisible() const override { return _isVisible; }
    void setLevel(PanelLevel level) override {
        _journal.note(level == PanelLevel::floating ? "panel.floating" : "panel.normal");
        _level = level;
    }
    void activate() override { _journal.note("panel.activate"); }
    [[nodiscard]] ScreenRect frame() const override { return place; }

    /// Where it is said to be.
    ScreenRect place{100, 50, 348, 600};

    [[nodiscard]] PanelLevel level() const { return _level; }
    [[nodiscard]] const StatusItemAnchor& anchor() const { return _anchor; }

    void pressEscape() { onCancel(); }
    /// As the window manager does it.
    void vanish() {
        _isVisible = false;
        onCancel();
    }
    void turnAway() { onTurnedAway(); }

private:
    Journal& _journal;
    bool _isVisible = false;
    PanelLevel _level = PanelLevel::floating;
    StatusItemAnchor _anchor;
};

} // namespace selvane::test
