#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace selvane {

/// The sounds that are made here to work by. Their numbers are those of the setting's cases.
enum class NoiseKind { rain = 0, white = 1, pink = 2, brown = 3 };

/// All that one channel remembers from one sample to the next.
struct NoiseVoice {
    /// State of the random numbers, xorshift64. Never 0, which would stay 0.
    std::uint64_t rng;
    /// Poles of the pink filter.
    float b0 = 0;
    float b1 = 0;
    float b2 = 0;
    float b3 = 0;
    float b4 = 0;
    float b5 = 0;
    float b6 = 0;
    /// The brown integrator, of brown noise and of the rain's rumble.
    float brown = 0;
    /// Fast low-pass of the rain's hiss, and slow low-pass of that.
    float hissLow = 0;
    float hissBase = 0;
    /// The amplitude of the drop that falls, its factor for each sample, and the noise of its last sample.
    float dropEnvelope = 0;
    float dropDecay = 0;
    float dropPrevious = 0;
    /// How hard it rains, how hard it is going to, and the samples until that is drawn anew.
    float intensity = 1;
    float intensityTarget = 1;
    std::int64_t intensityCountdown = 0;

    friend bool operator==(const NoiseVoice&, const NoiseVoice&) = default;
};

/// Makes rain and white, pink and brown noise in stereo. Computed while it plays, not looped: it doesn't
/// repeat.
///
/// Each synth makes the same, on every machine, to the last bit: the random numbers begin where they always
/// begin, and all arithmetic is that of 32-bit floats, each operation rounded by itself. So it must not be
/// compiled with contraction or fast mathematics.
///
/// Two threads: the main thread writes the two atomics, which are independent of each other; one other thread
/// renders, and is the only one to ask for what rendering changes.
class NoiseSynth {
public:
    /// `framesPerSecond` is above 0.
    explicit NoiseSynth(float framesPerSecond);

    /// A `NoiseKind` as a number. Any other number makes rain. A change takes effect with the next `render`.
    std::atomic<int> kindRaw = 0;
    /// The bits of the 32-bit float that the gain moves to, with a time constant of half a second.
    std::atomic<std::uint32_t> targetGainBits = 0;

    /// Writes what comes next, `frameCount` samples to each of `buffers`: the first is the left channel, the
    /// second the right one, others stay as they are. A channel that is missing or null stands still. The
    /// length of a call makes no difference to the samples, only to when a change is heard.
    ///
    /// For threads that must not wait: allocates nothing, locks nothing, calls nothing but `exp`.
    void render(std::size_t frameCount, std::span<float* const> buffers);

    [[nodiscard]] float sampleRate() const { return _sampleRate; }
    /// On the thread that renders, as are the voices.
    [[nodiscard]] float gain() const { return _gain; }
    [[nodiscard]] const NoiseVoice& left() const { return _left; }
    [[nodiscard]] const NoiseVoice& right() const { return _right; }

private:
    template <NoiseKind kind>
    void fill(std::size_t frameCount, std::span<float* const> buffers);

    const float _sampleRate;
    float _gain = 0;
    NoiseVoice _left{.rng = 0x9E37'79B9'7F4A'7C15};
    NoiseVoice _right{.rng = 0xD1B5'4A32'D192'ED03};
};

} // namespace selvane
