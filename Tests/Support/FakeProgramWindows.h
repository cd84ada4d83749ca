#pragma once

#include "Selvane/UI/ProgramWindows.h"

#include <optional>

namespace selvane::test {

/// Windows that get the keyboard and close when a test says so.
class FakeProgramWindows final : public ProgramWindows {
public:
    [[nodiscard]] std::optional<ProgramWindow> key() const override { return _key; }

    void giveKeyboardTo(std::optional<ProgramWindow> window) {
        _key = window;
        keyChanged.emit();
    }
    /// As window systems do it: the window still has the keyboard when it says that it closes.
    void close(ProgramWindow window) { willClose.emit(window); }

private:
    std::optional<ProgramWindow> _key;
};

} // namespace selvane::test
