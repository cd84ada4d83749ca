#pragma once

#include "SelvaneCore/Signal.h"

#include <optional>
#include <string>

namespace selvane {

/// Turns the desktop's Do Not Disturb on and off, and off again only if it turned it on. Main thread; returns
/// at once.
class FocusModeController {
public:
    virtual ~FocusModeController() = default;

    virtual void set(bool on) = 0;

    /// What keeps it from being used as it is set up; absent if nothing does.
    [[nodiscard]] virtual std::optional<std::string> problem() const = 0;
    /// The last failure; absent once it worked again.
    [[nodiscard]] virtual const std::optional<std::string>& lastError() const = 0;

    /// Emitted when `problem` or `lastError` has changed.
    Signal<> changed;
};

} // namespace selvane
