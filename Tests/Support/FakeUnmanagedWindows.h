#pragma once

#include "Selvane/Platform/UnmanagedWindows.h"

#include <functional>
#include <optional>
#include <utility>

namespace selvane::test {

/// A desktop on which a test says when a window has got the keyboard.
class FakeUnmanagedWindows final : public UnmanagedWindows {
public:
    [[nodiscard]] bool areWelcome() const override { return isFriendly; }
    void lendKeyboard(Window window, std::function<void()> onGiven) override {
        ++loans;
        borrower = window;
        give = std::move(onGiven);
    }
    void returnKeyboard() override { borrower.reset(); }
    void putBehind(Window window, Window other) override { lowered = std::pair(window, other); }

    bool isFriendly = true;
    int loans = 0;
    std::optional<Window> borrower;
    std::function<void()> give;
    /// The window that was put behind another, and that.
    std::optional<std::pair<Window, Window>> lowered;
};

} // namespace selvane::test
