#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace selvane {

/// A stream as the output and the client of a sound server share it.
struct PlayedStream {
    PlayedStream(std::shared_ptr<AudioSource> streamSource, std::uint32_t rate)
        : source(std::move(streamSource)), framesPerSecond(rate) {}

    const std::shared_ptr<AudioSource> source;
    const std::uint32_t framesPerSecond;
    /// From 0 to 1. The client reads it whenever it asks the source.
    std::atomic<float> volume = 1;
    /// Set by the client when the server has played a second of it.
    std::atomic<bool> isHeard = false;
};

/// What is wished of a stream.
struct StreamWish {
    std::shared_ptr<PlayedStream> stream;
    /// The number of the start that it shall follow; 0 while it is to be paused.
    std::uint64_t start = 0;
};

/// What the client of a sound server is told by the output that it works for, and tells it. Called on the
/// client's thread.
class AudioClientHost {
public:
    /// What is to be played once and was not taken yet.
    [[nodiscard]] virtual std::vector<std::shared_ptr<AudioSource>> takeSources() = 0;
    /// All streams that there are. When the client ends, those that it was to play count as lost.
    [[nodiscard]] virtual std::vector<StreamWish> streams() = 0;
    /// Whether everything is to be let go.
    [[nodiscard]] virtual bool isEnding() const = 0;

    virtual void connectionSucceeded() = 0;
    virtual void connectionFailed(const std::string& reason) = 0;
    /// The start of a stream was in vain, for that reason; or without a reason: it played and is lost.
    virtual void streamFailed(const StreamWish& wish, const std::string& reason) = 0;

protected:
    ~AudioClientHost() = default;
};

/// Connects with the sound server and plays what `host` has, until nothing has played for a while, the server
/// is gone or doesn't answer, or the host ends. `wake` is readable when the host has something new to say.
///
/// The plugin that holds the client defines it under the name below, so that the program at rest doesn't
/// carry the library that speaks with the server. The plugin writes no log, which would be one of its own.
using RunAudioClient = void (*)(AudioClientHost& host, int wake);
inline constexpr const char* runAudioClientName = "selvaneRunAudioClient2";

} // namespace selvane
