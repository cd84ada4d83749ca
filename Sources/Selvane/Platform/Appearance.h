#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// How the desktop wants programs to look. Main thread.
class Appearance {
public:
    virtual ~Appearance() = default;

    /// True if the desktop asks for light text on a dark ground. False until the desktop has answered.
    [[nodiscard]] virtual bool isDark() const = 0;

    /// True if the desktop asks for colours that stand out strongly from each other. False until the desktop
    /// has answered.
    [[nodiscard]] virtual bool isHighContrast() const = 0;

    /// True if the desktop asks for less motion: what would move or fade changes at once. False until the
    /// desktop has answered.
    [[nodiscard]] virtual bool reducesMotion() const = 0;

    /// True if windows may be translucent: what a window leaves clear shows what lies behind it. Asks the
    /// desktop at each call; `changed` doesn't tell of it.
    [[nodiscard]] virtual bool isComposited() const = 0;

    /// Emitted when `isDark`, `isHighContrast` or `reducesMotion` has changed.
    Signal<> changed;
};

} // namespace selvane
