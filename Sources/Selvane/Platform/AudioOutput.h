#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>

namespace selvane {

class AudioStream;

/// One moment of sound, each side between -1 and 1.
struct AudioFrame {
    float left;
    float right;
    friend bool operator==(const AudioFrame&, const AudioFrame&) = default;
};

/// A sound that is made while it plays.
class AudioSource {
public:
    /// The most frames that are asked for at once, so that a source can have the room for them beforehand.
    static constexpr std::size_t longestPiece = 5'760;

    virtual ~AudioSource() = default;

    /// Fills `frames` from the front with what comes next. Gives how many; fewer than there is room for means
    /// that the sound is over. Called on a thread of the output's, in pieces of any size up to the longest:
    /// must not wait.
    [[nodiscard]] virtual std::size_t render(std::span<AudioFrame> frames) = 0;
};

/// Where sound goes. Main thread; returns at once, whatever the sound system does.
class AudioOutput {
public:
    static constexpr int framesPerSecond = 48'000;
    /// How long the output keeps its thread and its device after what played last.
    static constexpr std::chrono::seconds afterglow{3};

    virtual ~AudioOutput() = default;

    /// Frames a second that the device plays; 0 if that isn't known.
    [[nodiscard]] virtual double sampleRate() const = 0;

    /// Plays `source`, of `framesPerSecond`, once from its beginning, beside whatever plays already, at the
    /// system's volume. It is let go when it is over, and early when there is no sound device or the device
    /// goes: no sound is caught up on later. Ends with the output.
    virtual void play(std::shared_ptr<AudioSource> source) = 0;

    /// Sound without an end, which waits to be started. `source` makes `sourceRate` frames a second, above 0,
    /// which the system turns into the device's rate. Ends before the output does.
    [[nodiscard]] virtual std::unique_ptr<AudioStream> stream(std::shared_ptr<AudioSource> source,
                                                              double sourceRate) = 0;
};

} // namespace selvane
