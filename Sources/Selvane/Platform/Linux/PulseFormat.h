#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <pulse/def.h>
#include <pulse/proplist.h>
#include <pulse/sample.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>

/// In which form sounds and streams go to the sound server.
namespace selvane::PulseFormat {

static_assert(sizeof(AudioFrame) == 2 * sizeof(float));

constexpr pa_sample_spec format(std::uint32_t framesPerSecond) {
    return {PA_SAMPLE_FLOAT32NE, framesPerSecond, 2};
}

/// A quarter of a second lies ready with the server, so that a busy machine makes no gap. It asks for more in
/// pieces of less than half of that: PulseAudio has the device wake it for what is left, and when nothing is,
/// two thousand times a second.
constexpr pa_buffer_attr buffer(std::uint32_t framesPerSecond) {
    const auto bytes = [framesPerSecond](std::chrono::milliseconds time) {
        return static_cast<std::uint32_t>(time.count() * framesPerSecond / 1000) *
               static_cast<std::uint32_t>(sizeof(AudioFrame));
    };
    // The server's own choice.
    constexpr auto automatic = static_cast<std::uint32_t>(-1);
    return {
        .maxlength = automatic,
        .tlength = bytes(std::chrono::milliseconds{260}),
        .prebuf = automatic,
        .minreq = bytes(std::chrono::milliseconds{120}),
        .fragsize = automatic,
    };
}

using Properties = std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)>;

inline Properties properties(std::initializer_list<std::pair<const char*, const char*>> values) {
    Properties list(pa_proplist_new(), pa_proplist_free);
    for (const auto& [key, value] : values)
        pa_proplist_sets(list.get(), key, value);
    return list;
}

} // namespace selvane::PulseFormat
