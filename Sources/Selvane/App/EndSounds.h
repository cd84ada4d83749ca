#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <cstddef>
#include <string_view>

/// The sounds that a phase ends with, as functions of time: nothing is recorded, nothing is kept. Each peaks
/// about 9 dB below the loudest that a device can play, and begins and ends in silence.
namespace selvane::EndSounds {

/// Frames of `AudioOutput::framesPerSecond`.
struct Sound {
    std::string_view name;
    std::size_t length;
    /// Any `index` below `length`. Any thread.
    AudioFrame (*frame)(std::size_t index);
};

/// The sound of that name, "Glass" or "Hero"; null for any other.
///
/// "Glass" is a small glass that is struck: bright, and gone in less than a second. "Hero" is a chord of
/// three notes, one after the other upwards, warm and a little longer.
[[nodiscard]] const Sound* named(std::string_view name);

} // namespace selvane::EndSounds
