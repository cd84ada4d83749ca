#include "Selvane/Music/NoiseSynth.h"

#include <array>
#include <bit>
#include <cassert>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>

#if defined(__FAST_MATH__) || defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__)
#error "Fast mathematics makes other samples on each machine."
#endif

namespace selvane {

namespace {

static_assert(FLT_EVAL_METHOD == 0, "Floats must be rounded after each operation.");
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);

// Both channels are computed at once, in two lanes of a register: half the instructions, each of which rounds
// as it does alone. Only the random numbers are made one by one, since registers with lanes are slower there.

/// A value of the left channel and one of the right. A register has two lanes more, in which what is computed
/// means nothing.
using Floats = float __attribute__((vector_size(16)));
using Integers = std::int32_t __attribute__((vector_size(16)));
using Words = std::uint64_t __attribute__((vector_size(16)));

constexpr float twoTo23 = 8'388'608;
constexpr float twoTo24 = 16'777'216;

/// The upper 24 bits of the next random number.
std::uint64_t drawn(std::uint64_t& rng) {
    std::uint64_t x = rng;
    x ^= x << 13;
    x ^= x >> 7;
    x ^= x << 17;
    rng = x;
    return x >> 40;
}

/// From 0 up to 1, without 1. Nothing is rounded: a float has room for 24 bits.
float uniform(std::uint64_t& rng) {
    return static_cast<float>(drawn(rng)) / twoTo24;
}

/// Both voices, and how many samples they make a second. Functions that take them are inlined, since nothing
/// in memory is as fast as a register.
struct Voices {
    float rate;
    std::array<std::uint64_t, 2> rng;
    std::array<std::int64_t, 2> intensityCountdown;
    Floats b0{}, b1{}, b2{}, b3{}, b4{}, b5{}, b6{};
    Floats brown{};
    Floats hissLow{}, hissBase{};
    Floats dropEnvelope{}, dropDecay{}, dropPrevious{};
    Floats intensity{}, intensityTarget{};
};

/// Those that a kind uses. The others would take registers from them.
template <NoiseKind kind, typename Visitor>
void visitFloats(Visitor visit) {
    if constexpr (kind == NoiseKind::pink) {
        visit(&Voices::b0, &NoiseVoice::b0);
        visit(&Voices::b1, &NoiseVoice::b1);
        visit(&Voices::b2, &NoiseVoice::b2);
        visit(&Voices::b3, &NoiseVoice::b3);
        visit(&Voices::b4, &NoiseVoice::b4);
        visit(&Voices::b5, &NoiseVoice::b5);
        visit(&Voices::b6, &NoiseVoice::b6);
    }
    if constexpr (kind == NoiseKind::brown || kind == NoiseKind::rain)
        visit(&Voices::brown, &NoiseVoice::brown);
    if constexpr (kind == NoiseKind::rain) {
        visit(&Voices::hissLow, &NoiseVoice::hissLow);
        visit(&Voices::hissBase, &NoiseVoice::hissBase);
        visit(&Voices::dropEnvelope, &NoiseVoice::dropEnvelope);
        visit(&Voices::dropDecay, &NoiseVoice::dropDecay);
        visit(&Voices::dropPrevious, &NoiseVoice::dropPrevious);
        visit(&Voices::intensity, &NoiseVoice::intensity);
        visit(&Voices::intensityTarget, &NoiseVoice::intensityTarget);
    }
}

template <NoiseKind kind>
Voices together(const NoiseVoice& left, const NoiseVoice& right, float rate) {
    Voices voices{rate, {left.rng, right.rng}, {left.intensityCountdown, right.intensityCountdown}};
    visitFloats<kind>([&](auto both, auto one) { voices.*both = Floats{left.*one, right.*one}; });
    return voices;
}

template <NoiseKind kind, std::size_t lane>
void keep(const Voices& voices, NoiseVoice& voice) {
    voice.rng = voices.rng[lane];
    voice.intensityCountdown = voices.intensityCountdown[lane];
    visitFloats<kind>([&](auto both, auto one) { voice.*one = (voices.*both)[lane]; });
}

[[gnu::always_inline]] inline Floats drawnNumbers(Voices& voices) {
    const std::uint64_t left = drawn(voices.rng[0]);
    const std::uint64_t right = drawn(voices.rng[1]);
    // They reach the lanes in one step, as the halves of a word. The left channel's is the first in memory.
    const std::uint64_t word =
        std::endian::native == std::endian::little ? left | right << 32 : left << 32 | right;
    return __builtin_convertvector(std::bit_cast<Integers>(Words{word}), Floats);
}

[[gnu::always_inline]] inline Floats uniform(Voices& voices) {
    return drawnNumbers(voices) / twoTo24;
}

/// White noise, 2 u - 1. No step rounds, whichever way that is written.
[[gnu::always_inline]] inline Floats noise(Voices& voices) {
    return drawnNumbers(voices) / twoTo23 - 1;
}

Floats integrated(Floats brown, Floats w) {
    return (brown + 0.02F * w) / 1.02F;
}

/// What a kind makes of the next sample.
template <NoiseKind kind>
Floats next(Voices& voices);

template <>
Floats next<NoiseKind::white>(Voices& voices) {
    return 0.16F * noise(voices);
}

/// The well-known filter of seven poles, which together fall by 3 dB an octave.
template <>
Floats next<NoiseKind::pink>(Voices& voices) {
    const Floats w = noise(voices);
    voices.b0 = 0.99886F * voices.b0 + 0.0555179F * w;
    voices.b1 = 0.99332F * voices.b1 + 0.0750759F * w;
    voices.b2 = 0.969F * voices.b2 + 0.153852F * w;
    voices.b3 = 0.8665F * voices.b3 + 0.3104856F * w;
    voices.b4 = 0.55F * voices.b4 + 0.5329522F * w;
    voices.b5 = -0.7616F * voices.b5 - 0.016898F * w;
    const Floats sum =
        voices.b0 + voices.b1 + voices.b2 + voices.b3 + voices.b4 + voices.b5 + voices.b6 + 0.5362F * w;
    voices.b6 = 0.115926F * w;
    return 0.05F * sum;
}

template <>
Floats next<NoiseKind::brown>(Voices& voices) {
    voices.brown = integrated(voices.brown, noise(voices));
    return voices.brown * 3.5F * 0.8F;
}

/// Where the rain of one channel swells to, and for how many samples.
struct Swell {
    std::uint64_t rng;
    float intensityTarget;
    std::int64_t intensityCountdown;
};

[[gnu::cold, gnu::noinline]] Swell drawnSwell(std::uint64_t rng, float rate) {
    const float target = 0.45F * uniform(rng) + 0.75F;
    const auto countdown = static_cast<std::int64_t>(rate * (2 * uniform(rng) + 1.5F));
    return {rng, target, countdown};
}

template <std::size_t lane>
[[gnu::always_inline]] inline void startSwell(Voices& voices) {
    const Swell swell = drawnSwell(voices.rng[lane], voices.rate);
    voices.rng[lane] = swell.rng;
    voices.intensityTarget[lane] = swell.intensityTarget;
    voices.intensityCountdown[lane] = swell.intensityCountdown;
}

/// A drop that begins to fall in one channel.
struct Drop {
    std::uint64_t rng;
    float amplitude;
    float decay;
};

[[gnu::cold, gnu::noinline]] Drop drawnDrop(std::uint64_t rng, float rate) {
    const float amplitude = 0.7F * uniform(rng) + 0.3F;
    const float exponent = -1 / (rate * (0.01F * uniform(rng) + 0.002F));
    return {rng, amplitude, static_cast<float>(std::exp(static_cast<double>(exponent)))};
}

/// A new drop takes the place of one that still falls.
template <std::size_t lane>
[[gnu::always_inline]] inline void startDrop(Voices& voices) {
    const Drop drop = drawnDrop(voices.rng[lane], voices.rate);
    voices.rng[lane] = drop.rng;
    voices.dropEnvelope[lane] = drop.amplitude;
    voices.dropDecay[lane] = drop.decay;
}

/// Hiss that swells slowly, rumble and drops. The order of the random draws is part of the sound.
template <>
Floats next<NoiseKind::rain>(Voices& voices) {
    // 1. A slow swell.
    --voices.intensityCountdown[0];
    --voices.intensityCountdown[1];
    if (voices.intensityCountdown[0] < 1)
        startSwell<0>(voices);
    if (voices.intensityCountdown[1] < 1)
        startSwell<1>(voices);
    // 2. The strength follows it.
    voices.intensity = voices.intensity + (voices.intensityTarget - voices.intensity) / (voices.rate * 1.2F);
    // 3. Hiss: a band of noise.
    voices.hissLow = voices.hissLow + (noise(voices) - voices.hissLow) * 0.4F;
    voices.hissBase = voices.hissBase + (voices.hissLow - voices.hissBase) * 0.02F;
    const Floats hiss = voices.hissLow - voices.hissBase;
    // 4. Rumble.
    voices.brown = integrated(voices.brown, noise(voices));
    // 5. Drops: about 40 a second.
    const auto falls = uniform(voices) < (40 / voices.rate) * voices.intensity;
    if (std::bit_cast<Words>(falls)[0] != 0) {
        if (falls[0] != 0)
            startDrop<0>(voices);
        if (falls[1] != 0)
            startDrop<1>(voices);
    }
    // 6. The noise of a drop is differentiated, which keeps it bright.
    const Floats w = noise(voices);
    const Floats click = voices.dropEnvelope * (w - voices.dropPrevious);
    voices.dropPrevious = w;
    voices.dropEnvelope = voices.dropEnvelope * voices.dropDecay;
    // 7. All together.
    return (voices.intensity * (hiss * 0.2F) + voices.brown * 3.5F * 0.45F + click * 0.12F) * 1.4F;
}

NoiseKind kindOf(int raw) {
    const bool isKnown =
        raw >= static_cast<int>(NoiseKind::rain) && raw <= static_cast<int>(NoiseKind::brown);
    return isKnown ? static_cast<NoiseKind>(raw) : NoiseKind::rain;
}

} // namespace

NoiseSynth::NoiseSynth(float framesPerSecond) : _sampleRate(framesPerSecond) {
    assert(framesPerSecond > 0);
}

void NoiseSynth::render(std::size_t frameCount, std::span<float* const> buffers) {
    switch (kindOf(kindRaw.load(std::memory_order_relaxed))) {
    case NoiseKind::rain:
        return fill<NoiseKind::rain>(frameCount, buffers);
    case NoiseKind::white:
        return fill<NoiseKind::white>(frameCount, buffers);
    case NoiseKind::pink:
        return fill<NoiseKind::pink>(frameCount, buffers);
    case NoiseKind::brown:
        return fill<NoiseKind::brown>(frameCount, buffers);
    }
}

template <NoiseKind kind>
void NoiseSynth::fill(std::size_t frameCount, std::span<float* const> buffers) {
    const float target = std::bit_cast<float>(targetGainBits.load(std::memory_order_relaxed));
    float* const left = buffers.empty() ? nullptr : buffers[0];
    float* const right = buffers.size() < 2 ? nullptr : buffers[1];
    const float step = 1 / (_sampleRate * 0.5F);
    float gain = _gain;
    // In locals, which the samples that are written can't touch.
    Voices voices = together<kind>(_left, _right, _sampleRate);
    for (std::size_t frame = 0; frame < frameCount; ++frame) {
        gain = gain + (target - gain) * step;
        const Floats samples = next<kind>(voices) * gain;
        if (left != nullptr)
            left[frame] = samples[0];
        if (right != nullptr)
            right[frame] = samples[1];
    }
    _gain = gain;
    // A channel that nobody hears was computed in vain, and stands where it stood.
    if (left != nullptr)
        keep<kind, 0>(voices, _left);
    if (right != nullptr)
        keep<kind, 1>(voices, _right);
}

} // namespace selvane
