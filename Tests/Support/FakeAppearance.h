#pragma once

#include "Selvane/Platform/Appearance.h"

#include <utility>

namespace selvane::test {

/// A desktop that turns dark when a test says so.
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return _isDark; }

    [[nodiscard]] bool isComposited() const override { return _isComposited; }

    void setComposited(bool composited) { _isComposited = composited; }
    void setDark(bool dark) {
        if (std::exchange(_isDark, dark) != dark)
            changed.emit();
    }

private:
    bool _isDark = false;
    bool _isComposited = false;
};

} // namespace selvane::test
