#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// How the desktop wants programs to look. Main thread.
class Appearance {
public:
    virtual ~Appearance() = default;

    /// True if the desktop asks for light text on a dark ground. False until the desktop has answered.
    [[nodiscard]] virtual bool isDark() const = 0;

    /// True if windows may be translucent: what a window leaves clear shows what lies behind it. Asks the
    /// desktop at each call; `changed` doesn't tell of it.
    [[nodiscard]] virtual bool isComposited() const = 0;

    /// Emitted when `isDark` has changed.
    Signal<> changed;
};

} // namespace selvane
