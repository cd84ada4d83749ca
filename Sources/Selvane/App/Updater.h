#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// Knows whether a newer version can be had. Main thread.
class Updater {
public:
    virtual ~Updater() = default;

    /// True if a newer version was found that the user hasn't been shown yet.
    [[nodiscard]] virtual bool updateAvailable() const = 0;
    /// False while no check can be started.
    [[nodiscard]] virtual bool canCheckForUpdates() const = 0;
    /// Looks for a newer version and shows the user what it found.
    virtual void checkForUpdates() = 0;

    /// Emitted when `updateAvailable` or `canCheckForUpdates` has changed.
    Signal<> changed;
};

} // namespace selvane
