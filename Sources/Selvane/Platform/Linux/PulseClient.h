#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "Selvane/Platform/Linux/PulsePlayback.h"
#include "Selvane/Platform/Linux/PulseStream.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct pa_context;
struct pa_io_event;
struct pa_mainloop;
struct pa_mainloop_api;
struct pa_operation;
struct pa_time_event;

namespace selvane {

/// One connection to the sound server, from its making to its end. Lives on the thread of the host, which is
/// inside of `run` meanwhile.
class PulseClient final : private PulseStream::Owner {
public:
    /// `wake` is readable when the host has something new to say.
    PulseClient(AudioClientHost& host, int wake);
    PulseClient(const PulseClient&) = delete;
    PulseClient& operator=(const PulseClient&) = delete;
    ~PulseClient();

    /// Connects and plays until nothing has played for a while, the server is gone or doesn't answer, or the
    /// host ends.
    void run();

private:
    /// A source on its way to the server.
    class Sound {
    public:
        Sound(PulseClient& client, std::shared_ptr<AudioSource> source);
        Sound(const Sound&) = delete;
        Sound& operator=(const Sound&) = delete;
        ~Sound();

        /// False if the server takes no more sounds.
        [[nodiscard]] bool start();

    private:
        void stateChanged();
        void write(std::size_t bytes);
        void drain();
        void drained();
        /// The last thing that is done with the object.
        void end() { _client.soundEnded(*this); }

        PulseClient& _client;
        std::shared_ptr<AudioSource> _source;
        PulsePlayback::Handle _stream;
        pa_operation* _draining = nullptr;
        bool _isOver = false;
    };

    void connect();
    void wakened();
    void stateChanged();
    /// Plays what the host wishes now.
    void followHost();
    void startSounds();
    void followStreams();
    void startStream(const StreamWish& wish);
    void soundEnded(const Sound& sound);
    void streamEnded(PulseStream& stream, const std::string& reason) override;
    void streamIsAsked() override;
    [[nodiscard]] bool isPlaying() const;
    void waitFor(std::chrono::microseconds time);
    /// On the clock of libpulse.
    void waitUntil(std::uint64_t moment);
    void timeIsUp();
    /// Whether it is there still, though it asks for nothing.
    void askServer();
    void serverAnswered();
    void quit();

    AudioClientHost& _host;
    int _wake;
    pa_mainloop* _loop;
    pa_mainloop_api* _api;
    pa_io_event* _wakeEvent = nullptr;
    pa_time_event* _timeEvent = nullptr;
    pa_context* _context = nullptr;
    bool _isReady = false;
    /// What waits for the connection.
    std::vector<std::shared_ptr<AudioSource>> _sources;
    std::vector<std::unique_ptr<Sound>> _sounds;
    /// Paused ones too.
    std::vector<std::unique_ptr<PulseStream>> _streams;
    /// Whether the server has asked for anything since the time was last up.
    bool _serverIsActive = false;
    /// Nothing is asked for by a server that is there, as with a device that is suspended: no time is set.
    bool _deviceStandsStill = false;
    /// What the server was asked to see whether it is there.
    pa_operation* _question = nullptr;
};

} // namespace selvane
