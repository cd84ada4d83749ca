#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace selvane {

/// One moment of sound, each side between -1 and 1.
struct AudioFrame {
    float left;
    float right;
    friend bool operator==(const AudioFrame&, const AudioFrame&) = default;
};

/// A sound that is made while it plays.
class AudioSource {
public:
    virtual ~AudioSource() = default;

    /// Fills `frames` from the front with what comes next. Gives how many; fewer than there is room for means
    /// that the sound is over. Called on a thread of the output's, in pieces of any size: must not wait.
    [[nodiscard]] virtual std::size_t render(std::span<AudioFrame> frames) = 0;
};

/// Where sound goes. Main thread; returns at once, whatever the sound system does.
class AudioOutput {
public:
    static constexpr int framesPerSecond = 48'000;

    virtual ~AudioOutput() = default;

    /// Plays `source` once from its beginning, beside whatever plays already, at the system's volume. It is
    /// let go when it is over, and early when there is no sound device or the device goes: no sound is caught
    /// up on later. Ends with the output.
    virtual void play(std::shared_ptr<AudioSource> source) = 0;
};

} // namespace selvane
