#pragma once

#include <string_view>

namespace selvane {

/// Plays the program's short sounds. Main thread; returns at once.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// Plays the sound named "Glass" or "Hero" at the system's volume. Does nothing without a sound device.
    virtual void play(std::string_view name) = 0;
};

} // namespace selvane
