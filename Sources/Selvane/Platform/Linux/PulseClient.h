#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Linux/AudioPlugin.h"

#include <chrono>
#include <memory>
#include <span>
#include <vector>

struct pa_context;
struct pa_io_event;
struct pa_mainloop;
struct pa_mainloop_api;
struct pa_operation;
struct pa_stream;
struct pa_time_event;

namespace selvane {

/// One connection to the sound server, from its making to its end. Lives on the thread of the host, which is
/// inside of `run` meanwhile.
class PulseClient {
public:
    /// `wake` is readable when the host has sources to take, or ends.
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
        pa_stream* _stream = nullptr;
        pa_operation* _draining = nullptr;
        bool _isOver = false;
    };

    void connect();
    void wakened();
    void stateChanged();
    void startSounds();
    void soundEnded(const Sound& sound);
    void waitFor(std::chrono::microseconds time);
    void timeIsUp();
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
    /// Whether the server has asked for anything since the time was last up.
    bool _serverIsActive = false;
};

} // namespace selvane
