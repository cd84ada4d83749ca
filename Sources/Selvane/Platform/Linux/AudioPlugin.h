#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <memory>
#include <string>
#include <vector>

namespace selvane {

/// What the client of a sound server is told by the output that it works for, and tells it. Called on the
/// client's thread.
class AudioClientHost {
public:
    /// What is to be played and was not taken yet.
    [[nodiscard]] virtual std::vector<std::shared_ptr<AudioSource>> takeSources() = 0;
    /// Whether everything is to be let go.
    [[nodiscard]] virtual bool isEnding() const = 0;

    virtual void connectionSucceeded() = 0;
    virtual void connectionFailed(const std::string& reason) = 0;

protected:
    ~AudioClientHost() = default;
};

/// Connects with the sound server and plays what `host` has, until nothing has played for a while, the server
/// is gone or doesn't answer, or the host ends. `wake` is readable when the host has something new to say.
///
/// The plugin that holds the client defines it under the name below, so that the program at rest doesn't
/// carry the library that speaks with the server. The plugin writes no log, which would be one of its own.
using RunAudioClient = void (*)(AudioClientHost& host, int wake);
inline constexpr const char* runAudioClientName = "selvaneRunAudioClient1";

} // namespace selvane
