#pragma once

#include "Selvane/Platform/Appearance.h"

#include <utility>

namespace selvane::test {

/// A desktop that looks as a test says.
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return _isDark; }
    [[nodiscard]] bool isHighContrast() const override { return _isHighContrast; }
    [[nodiscard]] bool reducesMotion() const override { return _reducesMotion; }
    [[nodiscard]] bool isComposited() const override { return _isComposited; }

    void setComposited(bool composited) { _isComposited = composited; }
    void setDark(bool dark) { set(_isDark, dark); }
    void setHighContrast(bool highContrast) { set(_isHighContrast, highContrast); }
    void setReducesMotion(bool reducesMotion) { set(_reducesMotion, reducesMotion); }

private:
    void set(bool& wish, bool value) {
        if (std::exchange(wish, value) != value)
            changed.emit();
    }

    bool _isDark = false;
    bool _isHighContrast = false;
    bool _reducesMotion = false;
    bool _isComposited = false;
};

} // namespace selvane::test
