#pragma once

#include "Selvane/Platform/Appearance.h"

#include <utility>

namespace selvane::test {

/// A desktop that turns dark when a test says so.
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return _isDark; }

    void setDark(bool dark) {
        if (std::exchange(_isDark, dark) != dark)
            changed.emit();
    }

private:
    bool _isDark = false;
};

} // namespace selvane::test
