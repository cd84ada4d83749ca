#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace selvane {

class PulseClient;

/// Plays through the sound server, PulseAudio or PipeWire, which mixes what plays at the same time and knows
/// the system's volume. A thread of its own connects when something is to be played, and ends together with
/// the connection a few seconds after the last sound. Nothing is started for want of a server: without one
/// nothing is heard, which the log says once, and again only after a connection that succeeded.
class PulseAudioOutput final : public AudioOutput {
public:
    PulseAudioOutput() = default;
    PulseAudioOutput(const PulseAudioOutput&) = delete;
    PulseAudioOutput& operator=(const PulseAudioOutput&) = delete;
    /// Cuts off what plays.
    ~PulseAudioOutput() override;

    void play(std::shared_ptr<AudioSource> source) override;

    /// Whether the thread and its connection exist.
    [[nodiscard]] bool isConnected() const;

private:
    friend class PulseClient;

    void work();

    // Called by the client on its thread.
    [[nodiscard]] std::vector<std::shared_ptr<AudioSource>> takeSources();
    [[nodiscard]] bool isEnding() const;
    void connectionSucceeded() { _failureIsKnown = false; }
    void connectionFailed(const std::string& reason);

    std::thread _thread;
    /// Touched by the thread only, of which there is one at a time.
    bool _failureIsKnown = false;

    mutable std::mutex _mutex;
    // Under the mutex.
    std::vector<std::shared_ptr<AudioSource>> _sources;
    /// An eventfd that is written when there is something to take; -1 while there is no thread.
    int _wake = -1;
    bool _isEnding = false;
};

} // namespace selvane
