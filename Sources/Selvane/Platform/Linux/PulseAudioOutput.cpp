#include "Selvane/Platform/Linux/PulseAudioOutput.h"

#include "Selvane/Platform/AudioStream.h"
#include "SelvaneCore/Log.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <utility>

namespace selvane {

namespace {

void wake(int eventDescriptor) {
    // Refused only when so many wishes are waiting that it is readable anyway.
    (void)eventfd_write(eventDescriptor, 1);
}

/// Signals are the main thread's.
void refuseSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

} // namespace

// A stream

class PulseAudioOutput::Stream final : public AudioStream {
public:
    Stream(PulseAudioOutput& output, std::shared_ptr<PlayedStream> played)
        : _output(output), _played(std::move(played)) {
        _output.add(*this);
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() override { _output.remove(*this); }

    void setVolume(float volume) override { _played->volume.store(volume, std::memory_order_relaxed); }
    [[nodiscard]] bool isRunning() const override { return _start != 0; }

    [[nodiscard]] tl::expected<void, std::string> start() override {
        if (isRunning())
            return {};
        _isWaiting = false;
        _output.endSearchOfNobody();
        const auto start = _output.start(_played);
        if (!start)
            return tl::unexpected(start.error());
        _start = *start;
        return {};
    }

    void pause() override {
        _output.pause(_played);
        _start = 0;
        _isWaiting = false;
        _failureIsTold = false;
        _output.endSearchOfNobody();
        _output._search.beginAnew();
    }

    [[nodiscard]] const std::shared_ptr<PlayedStream>& played() const { return _played; }
    /// Whether it waits for a device.
    [[nodiscard]] bool isWaiting() const { return _isWaiting; }

    void lost(const Notice& notice) {
        // A later start is another matter.
        if (notice.wish.start != _start)
            return;
        _start = 0;
        _isWaiting = !notice.isForGood;
        if (_played->isHeard.exchange(false)) {
            _failureIsTold = false;
            _output._search.beginAnew();
        }
        if (_isWaiting)
            _output._search.wait();
        tellFailure(notice.reason);
    }

    /// This and what follows is the last thing that is done with the object, which may end by it.
    void deviceFound() {
        _isWaiting = false;
        configurationChanged.emit();
    }

    void tellFailure(const std::string& reason) {
        if (!reason.empty() && !std::exchange(_failureIsTold, true))
            failed.emit(reason);
    }

private:
    PulseAudioOutput& _output;
    std::shared_ptr<PlayedStream> _played;
    /// The number of the start by which it runs; 0 when it doesn't.
    std::uint64_t _start = 0;
    bool _isWaiting = false;
    bool _failureIsTold = false;
};

// On the main thread

PulseAudioOutput::PulseAudioOutput(std::string plugin, Scheduler& scheduler)
    : _plugin(std::move(plugin)), _search(scheduler, [this] { lookForServer(); }) {}

PulseAudioOutput::~PulseAudioOutput() {
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        if (_wake != -1)
            wake(_wake);
    }
    if (_thread.joinable())
        _thread.join();
}

void PulseAudioOutput::play(std::shared_ptr<AudioSource> source) {
    {
        const std::lock_guard lock(_mutex);
        _sources.push_back(std::move(source));
    }
    if (const std::error_code error = haveThread()) {
        takeSources().clear();
        fail("no sounds are heard: " + error.message());
    }
}

std::unique_ptr<AudioStream> PulseAudioOutput::stream(std::shared_ptr<AudioSource> source,
                                                      double sourceRate) {
    return std::make_unique<Stream>(
        *this, std::make_shared<PlayedStream>(std::move(source),
                                              static_cast<std::uint32_t>(std::lround(sourceRate))));
}

std::error_code PulseAudioOutput::haveThread() {
    {
        const std::lock_guard lock(_mutex);
        if (_wake != -1) {
            wake(_wake);
            return {};
        }
    }
    // One that was there before has nothing left to do but to return.
    if (_thread.joinable())
        _thread.join();
    return beginThread();
}

bool PulseAudioOutput::mayBeLoading() const {
    const std::lock_guard lock(_mutex);
    return _thread.joinable() && !_isConnected;
}

std::error_code PulseAudioOutput::beginThread() {
    _wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (_wake == -1)
        return {errno, std::generic_category()};
    try {
        _thread = std::thread([this] { work(); });
    } catch (const std::system_error& error) {
        close(std::exchange(_wake, -1));
        return error.code();
    }
    return {};
}

void PulseAudioOutput::threadEnded() {
    {
        const std::lock_guard lock(_mutex);
        // It goes on, or another one has begun meanwhile: that will tell its own end.
        if (_wake != -1)
            return;
    }
    if (!_thread.joinable())
        return;
    _thread.join();
    if (onRest)
        onRest();
}

bool PulseAudioOutput::MainThread::event(QEvent* event) {
    if (event->type() != QEvent::User)
        return QObject::event(event);
    _output.handleNotices();
    _output.threadEnded();
    return true;
}

void PulseAudioOutput::handleNotices() {
    std::vector<Notice> notices;
    {
        const std::lock_guard lock(_mutex);
        notices = std::exchange(_notices, {});
    }
    for (const Notice& notice : notices) {
        switch (notice.kind) {
        case Notice::Kind::streamFailed:
            if (Stream* const stream = streamOf(notice.wish.stream))
                stream->lost(notice);
            break;
        case Notice::Kind::serverFound:
            serverFound();
            break;
        case Notice::Kind::noServer:
            noServer(notice.reason);
            break;
        }
    }
}

void PulseAudioOutput::add(Stream& stream) {
    _streams.push_back(&stream);
    const std::lock_guard lock(_mutex);
    _wishes.push_back({{stream.played(), 0}});
}

void PulseAudioOutput::remove(Stream& stream) {
    std::erase(_streams, &stream);
    endSearchOfNobody();
    const std::lock_guard lock(_mutex);
    std::erase_if(_wishes, [&stream](const Wish& wish) { return wish.stream == stream.played(); });
    if (_wake != -1)
        wake(_wake);
}

tl::expected<std::uint64_t, std::string>
PulseAudioOutput::start(const std::shared_ptr<PlayedStream>& stream) {
    {
        const std::lock_guard lock(_mutex);
        wishOf(stream)->start = ++_lastStart;
    }
    if (const std::error_code error = haveThread()) {
        const std::lock_guard lock(_mutex);
        wishOf(stream)->start = 0;
        return tl::unexpected(error.message());
    }
    return _lastStart;
}

void PulseAudioOutput::pause(const std::shared_ptr<PlayedStream>& stream) {
    const std::lock_guard lock(_mutex);
    if (std::exchange(wishOf(stream)->start, 0) != 0 && _wake != -1)
        wake(_wake);
}

PulseAudioOutput::Stream* PulseAudioOutput::streamOf(const std::shared_ptr<PlayedStream>& played) const {
    const auto found = std::ranges::find(_streams, played, [](Stream* stream) { return stream->played(); });
    return found == _streams.end() ? nullptr : *found;
}

std::vector<std::shared_ptr<PlayedStream>> PulseAudioOutput::waitingStreams() const {
    std::vector<std::shared_ptr<PlayedStream>> waiting;
    for (const Stream* const stream : _streams) {
        if (stream->isWaiting())
            waiting.push_back(stream->played());
    }
    return waiting;
}

void PulseAudioOutput::endSearchOfNobody() {
    if (std::ranges::none_of(_streams, [](const Stream* stream) { return stream->isWaiting(); }))
        _search.end();
}

void PulseAudioOutput::lookForServer() {
    {
        const std::lock_guard lock(_mutex);
        if (_isConnected) {
            tell({.kind = Notice::Kind::serverFound, .wish = {}, .reason = {}});
            return;
        }
        _isLooking = true;
    }
    if (const std::error_code error = haveThread()) {
        const std::lock_guard lock(_mutex);
        _isLooking = false;
        tell({.kind = Notice::Kind::noServer, .wish = {}, .reason = error.message()});
    }
}

void PulseAudioOutput::serverFound() {
    _search.end();
    for (const auto& played : waitingStreams()) {
        Stream* const stream = streamOf(played);
        if (stream != nullptr && stream->isWaiting())
            stream->deviceFound();
    }
}

void PulseAudioOutput::noServer(const std::string& reason) {
    const std::vector<std::shared_ptr<PlayedStream>> waiting = waitingStreams();
    if (waiting.empty())
        return;
    _search.wait();
    for (const auto& played : waiting) {
        Stream* const stream = streamOf(played);
        if (stream != nullptr && stream->isWaiting())
            stream->tellFailure(reason);
    }
}

// On the thread

void PulseAudioOutput::work() {
    refuseSignals();
    pthread_setname_np(pthread_self(), "sounds");
    const RunAudioClient runClient = loadedClient();
    while (true) {
        if (runClient == nullptr)
            refuseWork();
        int descriptor = -1;
        {
            const std::lock_guard lock(_mutex);
            if (_isEnding || !hasWork()) {
                close(std::exchange(_wake, -1));
                break;
            }
            descriptor = _wake;
        }
        if (runClient != nullptr) {
            runClient(*this, descriptor);
            clientEnded();
        }
    }
    QCoreApplication::postEvent(&_mainThread, new QEvent(QEvent::User));
}

RunAudioClient PulseAudioOutput::loadedClient() {
    if (_client != nullptr)
        return _client;
    // Stays loaded, since libpulse refuses to be unloaded.
    void* const plugin = dlopen(_plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (plugin != nullptr)
        _client = reinterpret_cast<RunAudioClient>(dlsym(plugin, runAudioClientName));
    if (_client == nullptr)
        _reason = std::string("couldn't load what plays sounds: ") + dlerror();
    return _client;
}

void PulseAudioOutput::refuseWork() {
    if (!takeSources().empty())
        fail(_reason);
    const std::lock_guard lock(_mutex);
    for (Wish& wish : _wishes) {
        if (wish.start != 0)
            loseStart(wish, _reason, true);
    }
    if (std::exchange(_isLooking, false))
        tell({.kind = Notice::Kind::noServer, .wish = {}, .reason = _reason});
}

void PulseAudioOutput::clientEnded() {
    const std::string reason = std::exchange(_reason, {});
    _soundsAreTaken = false;
    const std::lock_guard lock(_mutex);
    _isConnected = false;
    for (Wish& wish : _wishes) {
        if (wish.start != 0 && wish.start == wish.seen)
            loseStart(wish, reason, false);
    }
}

void PulseAudioOutput::fail(const std::string& line) {
    if (!std::exchange(_failureIsKnown, true))
        Log::line(line);
}

std::vector<std::shared_ptr<AudioSource>> PulseAudioOutput::takeSources() {
    const std::lock_guard lock(_mutex);
    _soundsAreTaken = _soundsAreTaken || !_sources.empty();
    return std::exchange(_sources, {});
}

std::vector<StreamWish> PulseAudioOutput::streams() {
    const std::lock_guard lock(_mutex);
    std::vector<StreamWish> streams;
    for (Wish& wish : _wishes) {
        wish.seen = wish.start;
        streams.push_back(wish);
    }
    return streams;
}

bool PulseAudioOutput::isEnding() const {
    const std::lock_guard lock(_mutex);
    return _isEnding;
}

void PulseAudioOutput::connectionSucceeded() {
    _failureIsKnown = false;
    const std::lock_guard lock(_mutex);
    _isConnected = true;
    if (std::exchange(_isLooking, false))
        tell({.kind = Notice::Kind::serverFound, .wish = {}, .reason = {}});
}

void PulseAudioOutput::connectionFailed(const std::string& reason) {
    if (_soundsAreTaken)
        fail("no sounds are heard: " + reason);
    _reason = reason;
    const std::lock_guard lock(_mutex);
    if (std::exchange(_isLooking, false))
        tell({.kind = Notice::Kind::noServer, .wish = {}, .reason = reason});
}

void PulseAudioOutput::streamFailed(const StreamWish& wish, const std::string& reason) {
    const std::lock_guard lock(_mutex);
    Wish* const current = wishOf(wish.stream);
    if (current != nullptr && current->start == wish.start)
        loseStart(*current, reason, false);
}

// With the mutex locked

bool PulseAudioOutput::hasWork() const {
    return !_sources.empty() || _isLooking ||
           std::ranges::any_of(_wishes, [](const Wish& wish) { return wish.start != 0; });
}

PulseAudioOutput::Wish* PulseAudioOutput::wishOf(const std::shared_ptr<PlayedStream>& stream) {
    const auto found = std::ranges::find(_wishes, stream, &StreamWish::stream);
    return found == _wishes.end() ? nullptr : &*found;
}

void PulseAudioOutput::loseStart(Wish& wish, const std::string& reason, bool isForGood) {
    tell({Notice::Kind::streamFailed, wish, reason, isForGood});
    wish.start = 0;
}

void PulseAudioOutput::tell(Notice notice) {
    _notices.push_back(std::move(notice));
    QCoreApplication::postEvent(&_mainThread, new QEvent(QEvent::User));
}

} // namespace selvane
