#pragma once

#include "Selvane/Music/NoiseSynth.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace selvane {

inline void PrintTo(const NoiseVoice& voice, std::ostream* stream) {
    *stream << "voice with random state " << voice.rng;
}

} // namespace selvane

namespace selvane::test {

inline constexpr std::array allKinds{NoiseKind::rain, NoiseKind::white, NoiseKind::pink, NoiseKind::brown};

inline std::string nameOf(NoiseKind kind) {
    constexpr std::array names{"Rain", "White", "Pink", "Brown"};
    return names.at(static_cast<std::size_t>(kind));
}

/// A synth, and what it rendered last.
class NoiseFixture : public testing::Test {
protected:
    static constexpr float rate = 48'000;

    void choose(int kindRaw) { _synth.kindRaw = kindRaw; }
    void choose(NoiseKind kind) { choose(static_cast<int>(kind)); }
    void aimAt(float gain) { _synth.targetGainBits = std::bit_cast<std::uint32_t>(gain); }

    /// Renders both channels; they can be looked at until the next call.
    void render(std::size_t frames) {
        _left.assign(frames, 9);
        _right.assign(frames, 9);
        _synth.render(frames, std::array{_left.data(), _right.data()});
    }
    void renderSeconds(double seconds) { render(static_cast<std::size_t>(seconds * double{rate})); }

    NoiseSynth _synth{rate};
    std::vector<float> _left;
    std::vector<float> _right;
};

} // namespace selvane::test
