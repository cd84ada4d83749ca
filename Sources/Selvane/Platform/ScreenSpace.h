#pragma once

#include "Selvane/Platform/Monitor.h"

#include <optional>

namespace selvane {

/// What the bars of the desktop leave of its screens. Main thread.
class ScreenSpace {
public:
    virtual ~ScreenSpace() = default;

    /// The part of a monitor that no bar takes, in pixels; nothing if the desktop doesn't tell.
    [[nodiscard]] virtual std::optional<ScreenRect> available(const ScreenRect& monitor) const = 0;
};

} // namespace selvane
