#include "Selvane/Music/NoiseSynth.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

constexpr double rate = 48'000;
/// The middles of the octaves that are looked at; each reaches from its half octave below to that above.
constexpr std::array octaves{31.25, 62.5, 125.0, 250.0, 500.0, 1000.0, 2000.0, 4000.0, 8000.0, 16000.0};
using Levels = std::array<double, octaves.size()>;

double decibels(double power) {
    return 10 * std::log10(power);
}

/// The discrete Fourier transform in place; the size is a power of two.
void transform(std::vector<std::complex<double>>& values) {
    const std::size_t size = values.size();
    for (std::size_t index = 1, other = 0; index < size; ++index) {
        std::size_t bit = size >> 1;
        for (; other & bit; bit >>= 1)
            other ^= bit;
        other ^= bit;
        if (index < other)
            std::swap(values[index], values[other]);
    }
    for (std::size_t half = 1; half < size; half *= 2) {
        std::vector<std::complex<double>> turns(half);
        for (std::size_t index = 0; index < half; ++index)
            turns[index] =
                std::polar(1.0, -std::numbers::pi * static_cast<double>(index) / static_cast<double>(half));
        for (std::size_t start = 0; start < size; start += 2 * half) {
            for (std::size_t index = start; index < start + half; ++index) {
                const std::complex<double> turned = turns[index - start] * values[index + half];
                values[index + half] = values[index] - turned;
                values[index] += turned;
            }
        }
    }
}

/// The power density in each octave of a density over angular frequencies.
template <typename Density>
Levels levels(Density density, std::size_t size) {
    Levels result{};
    for (std::size_t octave = 0; octave < octaves.size(); ++octave) {
        double sum = 0;
        int count = 0;
        for (std::size_t bin = 1; bin < size / 2; ++bin) {
            const double hertz = rate * static_cast<double>(bin) / static_cast<double>(size);
            if (hertz < octaves[octave] / std::numbers::sqrt2 ||
                hertz >= octaves[octave] * std::numbers::sqrt2)
                continue;
            sum += density(bin);
            ++count;
        }
        result[octave] = decibels(sum / count);
    }
    return result;
}

constexpr std::size_t window = 16'384;

/// The power density of rendered sound in each octave, both channels: 0 dB is that of noise with variance 1.
Levels measured(NoiseKind kind) {
    NoiseSynth synth(static_cast<float>(rate));
    synth.kindRaw = static_cast<int>(kind);
    synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
    std::vector<float> left(window);
    std::vector<float> right(window);
    const std::array buffers{left.data(), right.data()};
    // Ten seconds until it has faded in.
    for (int piece = 0; piece < 30; ++piece)
        synth.render(window, buffers);
    std::vector<double> powers(window);
    constexpr int pieces = 160;
    double windowPower = 0;
    for (int piece = 0; piece < pieces; ++piece) {
        synth.render(window, buffers);
        std::vector<std::complex<double>> values(window);
        for (std::size_t index = 0; index < window; ++index) {
            const double angle =
                2 * std::numbers::pi * static_cast<double>(index) / static_cast<double>(window);
            const double weight = 0.5 - 0.5 * std::cos(angle);
            windowPower += weight * weight / pieces;
            values[index] = weight * std::complex<double>(left[index], right[index]);
        }
        transform(values);
        // Left and right went in as one complex signal, so their powers come out together.
        for (std::size_t bin = 1; bin < window; ++bin)
            powers[bin] += (std::norm(values[bin]) + std::norm(values[window - bin])) / 4 / pieces;
    }
    return levels([&](std::size_t bin) { return powers[bin] / windowPower; }, window);
}

/// The same from a formula of the angular frequency of a sample.
template <typename Formula>
Levels fromFormula(Formula formula) {
    return levels(
        [&](std::size_t bin) {
            return formula(2 * std::numbers::pi * static_cast<double>(bin) / static_cast<double>(window));
        },
        window);
}

void expectLevels(const Levels& levels, const Levels& expected, double tolerance) {
    for (std::size_t octave = 0; octave < octaves.size(); ++octave)
        EXPECT_NEAR(levels[octave], expected[octave], tolerance) << octaves[octave] << " Hz";
}

/// From one octave to the next, those whose middles lie from `lowest` to `highest`.
void expectSlope(const Levels& levels, double slope, double lowest, double highest) {
    for (std::size_t octave = 1; octave < octaves.size(); ++octave) {
        if (octaves[octave - 1] < lowest || octaves[octave] > highest)
            continue;
        EXPECT_NEAR(levels[octave] - levels[octave - 1], slope, 0.5) << "up to " << octaves[octave] << " Hz";
    }
}

/// The power of a number drawn from -1 to 1.
constexpr double drawn = 1.0 / 3;

using Complex = std::complex<double>;

/// One sample later, at an angular frequency.
Complex later(double omega) {
    return std::polar(1.0, -omega);
}

double integrated(double omega) {
    return std::norm(0.02 / 1.02 / (1.0 - later(omega) / 1.02));
}

TEST(NoiseSpectrumTest, WhiteIsFlat) {
    const Levels levels = measured(NoiseKind::white);
    expectLevels(levels, fromFormula([](double) { return 0.16 * 0.16 * drawn; }), 0.2);
    expectSlope(levels, 0, 0, rate);
}

TEST(NoiseSpectrumTest, PinkFallsByThreeDecibelsAnOctave) {
    const Levels levels = measured(NoiseKind::pink);
    expectSlope(levels, -3.01, 0, rate);
    expectLevels(levels, fromFormula([](double omega) {
                     const Complex z = later(omega);
                     const Complex response = 0.0555179 / (1.0 - 0.99886 * z) +
                                              0.0750759 / (1.0 - 0.99332 * z) + 0.153852 / (1.0 - 0.969 * z) +
                                              0.3104856 / (1.0 - 0.8665 * z) + 0.5329522 / (1.0 - 0.55 * z) -
                                              0.016898 / (1.0 + 0.7616 * z) + 0.115926 * z + 0.5362;
                     return 0.05 * 0.05 * std::norm(response) * drawn;
                 }),
                 0.2);
}

TEST(NoiseSpectrumTest, BrownFallsBySixDecibelsAnOctave) {
    const Levels levels = measured(NoiseKind::brown);
    // Its integrator leaks below 150 Hz, and no filter of one pole falls on towards half the sample rate.
    expectSlope(levels, -6.02, 500, 8000);
    expectLevels(levels,
                 fromFormula([](double omega) { return 3.5 * 0.8 * 3.5 * 0.8 * integrated(omega) * drawn; }),
                 0.2);
}

/// The mean square of the envelope of drops: each starts between 0.3 and 1, decays in 2 to 12 ms, and ends
/// when the next one starts.
double dropPower(double dropsPerSecond) {
    constexpr int steps = 1000;
    double sum = 0;
    for (int step = 0; step < steps; ++step) {
        const double seconds = 0.002 + 0.01 * (step + 0.5) / steps;
        sum += dropsPerSecond / (dropsPerSecond + 2 / seconds) / steps;
    }
    return (1 - 0.3 * 0.3 * 0.3) / 3 / 0.7 * sum;
}

TEST(NoiseSpectrumTest, RainIsHissRumbleAndFortyDropsASecond) {
    // A swell stays near the middle between 0.75 and 1.2.
    constexpr double strength = 0.975;
    const double drops = dropPower(40 * strength);
    expectLevels(measured(NoiseKind::rain), fromFormula([&](double omega) {
                     const Complex z = later(omega);
                     const Complex low = 0.4 / (1.0 - 0.6 * z);
                     const Complex base = low * 0.02 / (1.0 - 0.98 * z);
                     const double hiss = strength * strength * 0.2 * 0.2 * std::norm(low - base);
                     const double rumble = 3.5 * 0.45 * 3.5 * 0.45 * integrated(omega);
                     const double clicks = 0.12 * 0.12 * drops * std::norm(1.0 - z);
                     return 1.4 * 1.4 * (hiss + rumble + clicks) * drawn;
                 }),
                 0.25);
}

} // namespace
} // namespace selvane::test
