#pragma once

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
};

} // namespace selvane
