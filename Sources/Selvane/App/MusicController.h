#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// Starts and stops the sound that the user chose to work by. Main thread; commands return at once, and one
/// that doesn't apply does nothing.
class MusicController {
public:
    virtual ~MusicController() = default;

    virtual void play() = 0;
    /// Harmless when nothing plays.
    virtual void pause() = 0;
    /// Takes over a change of source, sound or volume.
    virtual void syncSettings() = 0;
    /// Brings the player of the chosen source before the user; nothing for a source that has none.
    virtual void openPlayer() = 0;

    /// True if something was started that wasn't stopped.
    [[nodiscard]] virtual bool isPlaying() const = 0;

    /// Emitted when `isPlaying` has changed.
    Signal<> changed;
};

} // namespace selvane
