#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// How the desktop wants programs to look. Main thread.
class Appearance {
public:
    virtual ~Appearance() = default;

    /// True if the desktop asks for light text on a dark ground. False until the desktop has answered.
    [[nodiscard]] virtual bool isDark() const = 0;

    /// Emitted when an answer above has changed.
    Signal<> changed;
};

} // namespace selvane
