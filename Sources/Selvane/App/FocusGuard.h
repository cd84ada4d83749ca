#pragma once

#include "SelvaneCore/Models.h"
#include "SelvaneCore/Signal.h"

#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// Follows during focus what is in front, and notices when it is a distraction. Main thread.
class FocusGuard {
public:
    virtual ~FocusGuard() = default;

    /// A focus phase started or resumed.
    virtual void focusStarted() = 0;
    /// The running focus phase paused.
    virtual void focusPaused() = 0;
    /// The phase is over. Where its time went; absent if nothing was followed. Harmless with no open session.
    [[nodiscard]] virtual std::optional<std::vector<AppUsage>> finish() = 0;
    /// A setting that the guard reads has changed.
    virtual void settingsChanged() = 0;

    /// The name of the confirmed distraction that is in front now.
    [[nodiscard]] virtual std::optional<std::string> driftAppName() const = 0;
    /// Where the time of the last finished session went; absent if nothing was followed since another began.
    [[nodiscard]] virtual const std::optional<std::vector<AppUsage>>& lastUsage() const = 0;

    /// Emitted when `driftAppName` or `lastUsage` has changed.
    Signal<> changed;
};

} // namespace selvane
