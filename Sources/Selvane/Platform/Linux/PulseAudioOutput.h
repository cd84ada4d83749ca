#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "Selvane/Platform/Linux/ServerSearch.h"

#include <QtCore/QObject>

#include <tl/expected.hpp>

#include <cstdint>
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
/// want of a server. Without one, without the plugin or without leave for a thread nothing is heard: of a
/// sound the log says so once, and again only after a connection that succeeded; a stream says so itself, and
/// as long as one wants to play, a server is looked for.
class PulseAudioOutput final : public AudioOutput, private AudioClientHost {
public:
    /// `plugin` is the path of the plugin's file. The scheduler outlives the output.
    PulseAudioOutput(std::string plugin, Scheduler& scheduler);
    PulseAudioOutput(const PulseAudioOutput&) = delete;
    PulseAudioOutput& operator=(const PulseAudioOutput&) = delete;
    /// Cuts off what plays.
    ~PulseAudioOutput() override;

    /// What the server is asked for. It knows the device's own.
    [[nodiscard]] double sampleRate() const override { return framesPerSecond; }
    void play(std::shared_ptr<AudioSource> source) override;
    [[nodiscard]] std::unique_ptr<AudioStream> stream(std::shared_ptr<AudioSource> source,
                                                      double sourceRate) override;

    /// Whether the thread and its connection are gone.
    [[nodiscard]] bool isAtRest() const { return !_thread.joinable(); }
    /// Whether the thread may be loading libraries: it is there and has no connection.
    [[nodiscard]] bool mayBeLoading() const;

    /// The output is at rest again. Called from the main loop.
    std::function<void()> onRest;

private:
    class Stream;

    /// Gets the events that the thread sends to the main thread.
    class MainThread final : public QObject {
    public:
        explicit MainThread(PulseAudioOutput& output) : _output(output) {}
        bool event(QEvent* event) override;

    private:
        PulseAudioOutput& _output;
    };

    /// What the main thread is told by the other one.
    struct Notice {
        enum class Kind { streamFailed, serverFound, noServer };
        Kind kind;
        StreamWish wish;
        std::string reason;
        /// Waiting doesn't help.
        bool isForGood = false;
    };

    struct Wish : StreamWish {
        /// The start that the client knows of.
        std::uint64_t seen = 0;
    };

    // On the main thread.
    /// A thread that does what is to be done. With the mutex unlocked.
    [[nodiscard]] std::error_code haveThread();
    [[nodiscard]] std::error_code beginThread();
    void threadEnded();
    void handleNotices();
    void add(Stream& stream);
    void remove(Stream& stream);
    /// Gives the number of the start.
    [[nodiscard]] tl::expected<std::uint64_t, std::string> start(const std::shared_ptr<PlayedStream>& stream);
    void pause(const std::shared_ptr<PlayedStream>& stream);
    [[nodiscard]] Stream* streamOf(const std::shared_ptr<PlayedStream>& played) const;
    [[nodiscard]] std::vector<std::shared_ptr<PlayedStream>> waitingStreams() const;
    /// A search goes on as long as a stream waits.
    void endSearchOfNobody();
    void lookForServer();
    void serverFound();
    void noServer(const std::string& reason);

    // On the thread.
    void work();
    [[nodiscard]] RunAudioClient loadedClient();
    void fail(const std::string& line);
    /// Without a client.
    void refuseWork();
    void clientEnded();
    [[nodiscard]] std::vector<std::shared_ptr<AudioSource>> takeSources() override;
    [[nodiscard]] std::vector<StreamWish> streams() override;
    [[nodiscard]] bool isEnding() const override;
    void connectionSucceeded() override;
    void connectionFailed(const std::string& reason) override;
    void streamFailed(const StreamWish& wish, const std::string& reason) override;

    // With the mutex locked.
    [[nodiscard]] bool hasWork() const;
    [[nodiscard]] Wish* wishOf(const std::shared_ptr<PlayedStream>& stream);
    void loseStart(Wish& wish, const std::string& reason, bool isForGood);
    void tell(Notice notice);

    std::string _plugin;
    std::thread _thread;
    MainThread _mainThread{*this};
    /// Those that live.
    std::vector<Stream*> _streams;
    std::uint64_t _lastStart = 0;
    ServerSearch _search;

    // Touched by the thread, of which there is one at a time, and while there is none.
    RunAudioClient _client = nullptr;
    bool _failureIsKnown = false;
    /// Whether the client has taken sounds.
    bool _soundsAreTaken = false;
    /// Why there is no connection, or no client.
    std::string _reason;

    mutable std::mutex _mutex;
    // Under the mutex.
    std::vector<std::shared_ptr<AudioSource>> _sources;
    std::vector<Wish> _wishes;
    std::vector<Notice> _notices;
    bool _isConnected = false;
    bool _isLooking = false;
    /// An eventfd that is written when there is something to take; -1 while there is no thread.
    int _wake = -1;
    bool _isEnding = false;
};

} // namespace selvane
