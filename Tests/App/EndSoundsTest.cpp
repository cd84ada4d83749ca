#include "Selvane/App/EndSounds.h"

#include "Selvane/App/EndSoundPlayer.h"
#include "Support/FakeAudioOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace selvane::test {
namespace {

constexpr double rate = AudioOutput::framesPerSecond;

struct Wanted {
    const char* name;
    double shortest;
    double longest;
    /// The middle of the spectrum, in hertz: above it lies harshness, below it dullness.
    double lowestMiddle;
    double highestMiddle;
};

class EndSoundsTest : public testing::TestWithParam<Wanted> {
protected:
    void SetUp() override {
        const EndSounds::Sound* const sound = EndSounds::named(GetParam().name);
        ASSERT_NE(sound, nullptr);
        for (std::size_t index = 0; index < sound->length; ++index)
            _frames.push_back(sound->frame(index));
    }

    [[nodiscard]] std::vector<double> side(float AudioFrame::*which) const {
        std::vector<double> samples;
        for (const AudioFrame& frame : _frames)
            samples.push_back(frame.*which);
        return samples;
    }

    std::vector<AudioFrame> _frames;
};

double peak(const std::vector<double>& samples) {
    double highest = 0;
    for (const double sample : samples)
        highest = std::max(highest, std::abs(sample));
    return highest;
}

/// The root of the mean square between two moments.
double strength(const std::vector<double>& samples, double from, double to) {
    const auto begin = static_cast<std::size_t>(from * rate);
    const auto end = std::min(samples.size(), static_cast<std::size_t>(to * rate));
    double sum = 0;
    for (std::size_t index = begin; index < end; ++index)
        sum += samples[index] * samples[index];
    return std::sqrt(sum / static_cast<double>(end - begin));
}

/// The discrete Fourier transform; the size is a power of two.
std::vector<std::complex<double>> transformed(const std::vector<std::complex<double>>& values) {
    if (values.size() == 1)
        return values;
    std::vector<std::complex<double>> even;
    std::vector<std::complex<double>> odd;
    for (std::size_t index = 0; index < values.size(); index += 2) {
        even.push_back(values[index]);
        odd.push_back(values[index + 1]);
    }
    even = transformed(even);
    odd = transformed(odd);
    std::vector<std::complex<double>> result(values.size());
    for (std::size_t index = 0; index < even.size(); ++index) {
        const double angle =
            -2 * std::numbers::pi * static_cast<double>(index) / static_cast<double>(values.size());
        const auto turned = std::polar(1.0, angle) * odd[index];
        result[index] = even[index] + turned;
        result[index + even.size()] = even[index] - turned;
    }
    return result;
}

/// The strengths from 0 Hz to half the rate.
std::vector<double> spectrum(const std::vector<double>& samples) {
    std::vector<std::complex<double>> padded(samples.begin(), samples.end());
    padded.resize(65'536);
    std::vector<double> strengths;
    for (const auto& value : transformed(padded))
        strengths.push_back(std::abs(value));
    strengths.resize(strengths.size() / 2);
    return strengths;
}

double hertzOf(std::size_t line) {
    return static_cast<double>(line) * rate / 65'536;
}

TEST_P(EndSoundsTest, LastsAMoment) {
    const double seconds = static_cast<double>(_frames.size()) / rate;
    EXPECT_GE(seconds, GetParam().shortest);
    EXPECT_LE(seconds, GetParam().longest);
}

TEST_P(EndSoundsTest, IsWellAudibleAndNeverClips) {
    const double decibels =
        20 * std::log10(std::max(peak(side(&AudioFrame::left)), peak(side(&AudioFrame::right))));
    EXPECT_NEAR(decibels, -9, 0.5);
}

TEST_P(EndSoundsTest, BothSidesAreAboutAsLoudAndNotTheSame) {
    const auto left = side(&AudioFrame::left);
    const auto right = side(&AudioFrame::right);
    EXPECT_NEAR(20 * std::log10(strength(left, 0, 2) / strength(right, 0, 2)), 0, 1.5);
    EXPECT_NE(left, right);
}

TEST_P(EndSoundsTest, BeginsAndEndsInSilence) {
    for (const auto& samples : {side(&AudioFrame::left), side(&AudioFrame::right)}) {
        EXPECT_LT(std::abs(samples.front()), 1e-4);
        EXPECT_LT(std::abs(samples.back()), 1e-4);
        EXPECT_LT(strength(samples, GetParam().shortest - 0.05, 2), peak(samples) / 30);
    }
}

TEST_P(EndSoundsTest, HasNoClicks) {
    // A jump between two frames of one sound would be heard as a click. The steepest swing here is far below.
    for (const auto& samples : {side(&AudioFrame::left), side(&AudioFrame::right)}) {
        double jump = std::abs(samples.front());
        for (std::size_t index = 1; index < samples.size(); ++index)
            jump = std::max(jump, std::abs(samples[index] - samples[index - 1]));
        EXPECT_LT(jump, 0.12);
    }
}

TEST_P(EndSoundsTest, HasNoConstantPart) {
    for (const auto& samples : {side(&AudioFrame::left), side(&AudioFrame::right)}) {
        double sum = 0;
        for (const double sample : samples)
            sum += sample;
        EXPECT_LT(std::abs(sum / static_cast<double>(samples.size())), 1e-4);
    }
}

TEST_P(EndSoundsTest, IsNeitherHarshNorDull) {
    double weighed = 0;
    double sum = 0;
    double harsh = 0;
    const auto strengths = spectrum(side(&AudioFrame::left));
    for (std::size_t line = 0; line < strengths.size(); ++line) {
        const double energy = strengths[line] * strengths[line];
        weighed += hertzOf(line) * energy;
        sum += energy;
        if (hertzOf(line) > 5000)
            harsh += energy;
    }
    EXPECT_GT(weighed / sum, GetParam().lowestMiddle);
    EXPECT_LT(weighed / sum, GetParam().highestMiddle);
    EXPECT_LT(harsh / sum, 0.01);
}

TEST_P(EndSoundsTest, ArrivesAtTheOutputWhole) {
    FakeAudioOutput output;
    EndSoundPlayer player(output);
    player.play(GetParam().name);
    player.play(GetParam().name);
    ASSERT_EQ(output.sources.size(), 2);

    // In pieces of uneven sizes, as servers ask for them.
    for (const auto& source : output.sources) {
        std::vector<AudioFrame> heard;
        std::array<AudioFrame, 997> piece{};
        std::size_t size = 1;
        while (true) {
            const std::size_t count = source->render(std::span(piece).first(size));
            heard.insert(heard.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
            if (count < size)
                break;
            size = size * 7 % 991;
        }
        EXPECT_TRUE(std::ranges::equal(heard, _frames));
        EXPECT_EQ(source->render(piece), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Sounds, EndSoundsTest,
                         testing::Values(Wanted{"Glass", 0.8, 1.0, 1000, 1800},
                                         Wanted{"Hero", 1.1, 1.3, 380, 700}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(EndSoundsTest, GlassFadesFromItsStrike) {
    const EndSounds::Sound& sound = *EndSounds::named("Glass");
    std::vector<double> samples;
    for (std::size_t index = 0; index < sound.length; ++index)
        samples.push_back(sound.frame(index).left);
    double before = strength(samples, 0.0, 0.1);
    for (const double moment : {0.1, 0.3, 0.5, 0.7}) {
        const double now = strength(samples, moment, moment + 0.1);
        EXPECT_LT(now, before);
        before = now;
    }
}

TEST(EndSoundsTest, HeroRises) {
    const EndSounds::Sound& sound = *EndSounds::named("Hero");
    const auto strongest = [&sound](double from, double to) {
        std::vector<double> samples;
        for (auto index = static_cast<std::size_t>(from * rate); index < static_cast<std::size_t>(to * rate);
             ++index)
            samples.push_back(sound.frame(index).left + sound.frame(index).right);
        return spectrum(samples);
    };
    const auto strengthAt = [&strongest](double from, double to, double hertz) {
        return strongest(from, to)[static_cast<std::size_t>(std::lround(hertz * 65'536 / rate))];
    };
    for (const auto& [start, hertz] : {std::pair{0.13, 440.0}, std::pair{0.26, 523.25}})
        EXPECT_GT(strengthAt(start, start + 0.12, hertz), 3 * strengthAt(start - 0.12, start, hertz))
            << hertz;
}

TEST(EndSoundsTest, OtherNamesAreSilent) {
    FakeAudioOutput output;
    EndSoundPlayer player(output);
    for (const char* const name : {"", "glass", "Glass ", "Ping", "/usr/share/sounds/Hero"}) {
        player.play(name);
        EXPECT_EQ(EndSounds::named(name), nullptr) << name;
    }
    EXPECT_TRUE(output.sources.empty());
}

} // namespace
} // namespace selvane::test
