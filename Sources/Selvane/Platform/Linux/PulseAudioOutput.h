#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Linux/AudioPlugin.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace selvane {

/// Plays through the sound server, PulseAudio or PipeWire, which mixes what plays at the same time and knows
/// the system's volume. A thread of its own loads the client's plugin and connects when something is to be
/// played, and ends together with the connection a few seconds after the last sound. Nothing is started for
/// want of a server: without one, without the plugin or without leave for a thread nothing is heard, which
/// the log says once, and again only after a connection that succeeded.
class PulseAudioOutput final : public AudioOutput, private AudioClientHost {
public:
    /// `plugin` is the path of the plugin's file.
    explicit PulseAudioOutput(std::string plugin);
    PulseAudioOutput(const PulseAudioOutput&) = delete;
    PulseAudioOutput& operator=(const PulseAudioOutput&) = delete;
    /// Cuts off what plays.
    ~PulseAudioOutput() override;

    void play(std::shared_ptr<AudioSource> source) override;

    /// Whether the thread and its connection are gone. As long as it is there, it may be loading libraries.
    [[nodiscard]] bool isAtRest() const { return !_thread.joinable(); }

    /// The output is at rest again. Called from the main loop.
    std::function<void()> onRest;

private:
    /// Gets the events that the thread sends to the main thread.
    class MainThread final : public QObject {
    public:
        explicit MainThread(PulseAudioOutput& output) : _output(output) {}
        bool event(QEvent* event) override;

    private:
        PulseAudioOutput& _output;
    };

    /// While there is none.
    [[nodiscard]] std::error_code beginThread();
    void threadEnded();

    // On the thread.
    void work();
    [[nodiscard]] RunAudioClient loadedClient();
    void fail(const std::string& line);
    [[nodiscard]] std::vector<std::shared_ptr<AudioSource>> takeSources() override;
    [[nodiscard]] bool isEnding() const override;
    void connectionSucceeded() override { _failureIsKnown = false; }
    void connectionFailed(const std::string& reason) override;

    std::string _plugin;
    std::thread _thread;
    MainThread _mainThread{*this};

    // Touched by the thread, of which there is one at a time, and while there is none.
    RunAudioClient _client = nullptr;
    bool _failureIsKnown = false;

    mutable std::mutex _mutex;
    // Under the mutex.
    std::vector<std::shared_ptr<AudioSource>> _sources;
    /// An eventfd that is written when there is something to take; -1 while there is no thread.
    int _wake = -1;
    bool _isEnding = false;
};

} // namespace selvane
