#include "Selvane/App/EndSounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace selvane::EndSounds {

namespace {

constexpr double rate = AudioOutput::framesPerSecond;

constexpr std::size_t frames(double seconds) {
    return static_cast<std::size_t>(seconds * rate);
}

/// From 0 to 1 within `length` seconds, without a corner at either end.
double rise(double seconds, double length) {
    if (seconds >= length)
        return 1;
    return 0.5 - 0.5 * std::cos(std::numbers::pi * std::max(seconds, 0.0) / length);
}

double tone(double hertz, double seconds) {
    return std::sin(2 * std::numbers::pi * hertz * seconds);
}

AudioFrame frame(double left, double right, double loudness) {
    return {static_cast<float>(left * loudness), static_cast<float>(right * loudness)};
}

// Glass

constexpr double glassLength = 0.9;

/// One of the ways in which a glass swings.
struct Mode {
    double hertz;
    double strength;
    /// Seconds until it has faded to the e-th part.
    double decay;
    /// No glass is quite round, so each mode is two that differ by this many hertz; each side hears one.
    double beat;
};

// The steps between the modes are those of a thin cup, which are no harmonics.
constexpr std::array glassModes{
    Mode{1046.5, 1.00, 0.240, 1.6},
    Mode{2428.0, 0.42, 0.150, 2.3},
    Mode{4448.0, 0.15, 0.080, 3.1},
    Mode{6938.0, 0.05, 0.035, 4.7},
};

AudioFrame glass(std::size_t index) {
    const double seconds = static_cast<double>(index) / rate;
    double left = 0;
    double right = 0;
    for (const Mode& mode : glassModes) {
        const double strength = mode.strength * std::exp(-seconds / mode.decay);
        left += strength * tone(mode.hertz - mode.beat / 2, seconds);
        right += strength * tone(mode.hertz + mode.beat / 2, seconds);
    }
    constexpr double attack = 0.004;
    constexpr double fade = 0.15;
    return frame(left, right, 0.234 * rise(seconds, attack) * rise(glassLength - seconds, fade));
}

// Hero

constexpr double heroLength = 1.2;

struct Note {
    double hertz;
    /// When it begins, in seconds.
    double start;
    /// The part of it that is on the right.
    double side;
};

// F major upwards: f', a', c''.
constexpr std::array heroNotes{
    Note{349.23, 0.00, 0.40},
    Note{440.00, 0.13, 0.50},
    Note{523.25, 0.26, 0.60},
};

/// A soft voice: its overtones are weak, and the higher ones fade first.
double heroVoice(double hertz, double seconds) {
    constexpr double decay = 0.42;
    constexpr std::array strengths{1.0, 0.36, 0.16, 0.06};
    double sum = 0;
    for (std::size_t overtone = 0; overtone < strengths.size(); ++overtone) {
        const double number = static_cast<double>(overtone + 1);
        sum += strengths[overtone] * std::exp(-seconds * number / decay) * tone(hertz * number, seconds);
    }
    return sum;
}

AudioFrame hero(std::size_t index) {
    const double seconds = static_cast<double>(index) / rate;
    constexpr double attack = 0.018;
    constexpr double fade = 0.25;
    double left = 0;
    double right = 0;
    for (const Note& note : heroNotes) {
        const double since = seconds - note.start;
        if (since <= 0)
            continue;
        const double swing = rise(since, attack) * heroVoice(note.hertz, since);
        left += (1 - note.side) * swing;
        right += note.side * swing;
    }
    return frame(left, right, 0.306 * rise(heroLength - seconds, fade));
}

constexpr std::array sounds{
    Sound{"Glass", frames(glassLength), glass},
    Sound{"Hero", frames(heroLength), hero},
};

} // namespace

const Sound* named(std::string_view name) {
    const auto* const found = std::ranges::find(sounds, name, &Sound::name);
    return found == sounds.end() ? nullptr : found;
}

} // namespace selvane::EndSounds
