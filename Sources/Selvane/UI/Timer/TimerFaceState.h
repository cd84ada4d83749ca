#pragma once

#include "Selvane/App/SettingChoices.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <QString>

#include <string_view>

namespace selvane {

class AppSettings;
class TimerEngine;

/// What the timer face shows, as a value.
struct TimerFaceState {
    TimerStyle style;
    Seconds remaining;
    /// The share of the phase that is over, from 0 to 1.
    double progress;
    Phase phase;
    bool isRunning;
    bool isPaused;
    /// The ordinal, from 1, of the focus phase within its set.
    int cyclePosition;
    int cycleLength;

    friend bool operator==(const TimerFaceState&, const TimerFaceState&) = default;
};

/// What the face says about its state: words, icons and opacities. A phase is never told by a colour.
namespace TimerFaceRules {

/// The state of the timer, in the style that the user chose.
[[nodiscard]] TimerFaceState stateOf(const TimerEngine& engine, const AppSettings& settings);

/// The part of a phase by which each style is recognised, at rest.
[[nodiscard]] TimerFaceState sample(TimerStyle style);

/// How high the face is in each style, in pixels of the window.
[[nodiscard]] double frameHeight(TimerStyle style);

/// What a screen reader says for the time: "24:13 remaining".
[[nodiscard]] QString timeLabel(Seconds remaining);

/// The word beside the time, in capitals.
[[nodiscard]] QString caption(Phase phase, bool isPaused);

/// How strong the arc or the bar stands.
[[nodiscard]] double opacity(Phase phase, bool isPaused);

/// The name of the symbol above the time; empty for the dot that stands for none.
[[nodiscard]] std::string_view glyph(const AppSettings& settings, Phase phase, bool isPaused);

/// The name of that button, and the title of what it opens.
[[nodiscard]] QString iconLabel(Phase phase);
[[nodiscard]] QString iconTitle(Phase phase);

} // namespace TimerFaceRules

} // namespace selvane
