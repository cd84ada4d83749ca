#pragma once

#include "Selvane/Music/NoiseSynth.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace selvane::test {

/// What a synth gives from its making, fading in, as noise_reference.py computes it without the synth.
struct GoldenNoise {
    NoiseKind kind;
    float rate;
    std::size_t frames;
    /// That of FNV-1a with 64 bits, which here takes whole samples in place of bytes: the bits of all
    /// samples, left and right in turns.
    std::uint64_t hash;
    /// The bits of the samples of `spotFrames`, left and right in turns, which tell where others begin.
    std::array<std::uint32_t, 10> spots;

    [[nodiscard]] std::array<std::size_t, 5> spotFrames() const {
        return {0, frames / 1000, frames / 100, frames / 10, frames - 1};
    }
};

/// The same for samples that a synth rendered, `piece` frames a call.
inline GoldenNoise rendered(NoiseKind kind, float rate, std::size_t frames, std::size_t piece) {
    GoldenNoise result{kind, rate, frames, 0xCBF2'9CE4'8422'2325, {}};
    const std::array spotFrames = result.spotFrames();
    NoiseSynth synth(rate);
    synth.kindRaw = static_cast<int>(kind);
    synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
    std::vector<float> left(piece);
    std::vector<float> right(piece);
    const std::array<float*, 2> buffers{left.data(), right.data()};
    for (std::size_t start = 0; start < frames; start += piece) {
        const std::size_t count = std::min(piece, frames - start);
        synth.render(count, buffers);
        for (std::size_t index = 0; index < count; ++index) {
            for (const float sample : {left[index], right[index]})
                result.hash = (result.hash ^ std::bit_cast<std::uint32_t>(sample)) * 0x100'0000'01B3;
        }
        for (std::size_t spot = 0; spot < spotFrames.size(); ++spot) {
            if (spotFrames[spot] < start || spotFrames[spot] >= start + count)
                continue;
            result.spots[2 * spot] = std::bit_cast<std::uint32_t>(left[spotFrames[spot] - start]);
            result.spots[2 * spot + 1] = std::bit_cast<std::uint32_t>(right[spotFrames[spot] - start]);
        }
    }
    return result;
}

// clang-format off
inline constexpr std::array goldenNoise{
    GoldenNoise{NoiseKind::rain, 44100, 1000, 0x740f67bed43552a6, {0xb5bda87f, 0x3691e961, 0x3614cee4, 0x37285af3, 0xb8200656, 0x37f53897, 0x388df215, 0x38154454, 0x3c17d764, 0xbc44b507}},
    GoldenNoise{NoiseKind::white, 44100, 1000, 0x384c76afb0a01ed6, {0x36af345b, 0x359a316b, 0xb64de0e8, 0xb6ac6ce6, 0xb89ba54b, 0xb82bbd25, 0xba26fd2c, 0xb9ee5011, 0xbb15f7e0, 0xbab9e5b8}},
    GoldenNoise{NoiseKind::pink, 44100, 1000, 0x07171bba8b89ee4d, {0x36345f18, 0x351ebd87, 0x35d4f0bc, 0xb602c4ba, 0xb7936009, 0xb7881040, 0xb874f170, 0xba2941d0, 0xbb9b1ab1, 0xbae2e21a}},
    GoldenNoise{NoiseKind::brown, 44100, 1000, 0xe11cf7e9d19f1588, {0x35f07a0f, 0x34d3a335, 0x36251c94, 0xb584ebb7, 0x369dc759, 0xb7799875, 0x396b39f3, 0xbaa3ad6f, 0xbbacb10e, 0xba735f67}},
    GoldenNoise{NoiseKind::rain, 48000, 1000, 0xa1e4621d7c52c7cb, {0xb5ae3f9b, 0x36860e6b, 0x3608b7bb, 0x371aad3c, 0xb813066f, 0x37e14d0e, 0x388273bf, 0x38092a0a, 0x3c0bc198, 0xbc350e22}},
    GoldenNoise{NoiseKind::white, 48000, 1000, 0xe953dc8d01a64d00, {0x36a0f81a, 0x358daa34, 0xb63d26b9, 0xb69e6a86, 0xb88f008a, 0xb81dc9b9, 0xba197308, 0xb9dafd7b, 0xbb0a090b, 0xbaab1b05}},
    GoldenNoise{NoiseKind::pink, 48000, 1000, 0x11e4e4a93cc5f0a3, {0x3625b75e, 0x3511d7bb, 0x35c3a3ab, 0xb5f0499a, 0xb7876745, 0xb77a0571, 0xb861153a, 0xba1b8898, 0xbb8ec33e, 0xbad0d486}},
    GoldenNoise{NoiseKind::brown, 48000, 1000, 0x73a98883ba279895, {0x35dcf025, 0x34c27125, 0x3617b254, 0xb5743e0b, 0x3690f63c, 0xb76551f4, 0x3958276d, 0xba966807, 0xbb9ef35a, 0xba6001f1}},
    GoldenNoise{NoiseKind::rain, 44100, 44100, 0x241a75c6c8e50f44, {0xb5bda87f, 0x3691e961, 0xb94e3304, 0xb92ad059, 0xbad1d1ef, 0xbb29b681, 0x3cd998a4, 0xbbcba6b6, 0xbe16d7de, 0x3db51f70}},
    GoldenNoise{NoiseKind::rain, 48000, 48000, 0x0b66b4d155819e0b, {0xb5ae3f9b, 0x36860e6b, 0x3671b3d8, 0xb92c9913, 0xba5a0e0d, 0xbb0e994a, 0xbd02771f, 0x3c7bb36d, 0xbe142512, 0x3d19c276}},
};

/// Ten minutes of each kind.
inline constexpr std::array longGoldenNoise{
    GoldenNoise{NoiseKind::rain, 48000, 28800000, 0x06a747aea0711f29, {0xb5ae3f9b, 0x36860e6b, 0xbddf4599, 0x3d46a88a, 0xbd4fcd30, 0xbd53490d, 0xbd687cdb, 0x3a7a8e11, 0xbdab0199, 0x3d2f82bf}},
    GoldenNoise{NoiseKind::white, 48000, 28800000, 0x4786fc557e62101f, {0x36a0f81a, 0x358daa34, 0xbd4d2cd0, 0xbd6f3d3c, 0xbc5b637b, 0x3de827dc, 0x3e1fbdce, 0x3dee1cff, 0x3df7e9b1, 0xbc992d5f}},
    GoldenNoise{NoiseKind::pink, 48000, 28800000, 0x97d54fbc401f031c, {0x3625b75e, 0x3511d7bb, 0xbd3bab91, 0xbcd078f4, 0x3c9ba74e, 0x3de96177, 0x3dba2e42, 0x3e5a6a54, 0x3d96395d, 0xbe6de464}},
    GoldenNoise{NoiseKind::brown, 48000, 28800000, 0x94964ded0973c036, {0x35dcf025, 0x34c27125, 0x3cad93f7, 0xbdab104a, 0xbde2391f, 0x3e78f704, 0x3e7fa71f, 0x3ed9435b, 0xbd91aa62, 0xbec1c2d2}},
};
// clang-format on

} // namespace selvane::test
