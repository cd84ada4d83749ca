#include "Selvane/Platform/Linux/PulseClient.h"

#include "Selvane/Platform/Linux/PulseFormat.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/rtclock.h>
#include <pulse/stream.h>
#include <pulse/timeval.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <utility>

namespace selvane {

namespace {

using namespace std::chrono_literals;

/// How long a server may take to answer, or to ask for more of what plays.
constexpr std::chrono::microseconds patience = 5s;
constexpr std::chrono::microseconds afterglow = AudioOutput::afterglow;

} // namespace

// The connection

PulseClient::PulseClient(AudioClientHost& host, int wake)
    : _host(host), _wake(wake), _loop(pa_mainloop_new()), _api(pa_mainloop_get_api(_loop)) {}

PulseClient::~PulseClient() {
    if (_question != nullptr) {
        pa_operation_cancel(_question);
        pa_operation_unref(_question);
    }
    _sounds.clear();
    _streams.clear();
    if (_context != nullptr) {
        pa_context_set_state_callback(_context, nullptr, nullptr);
        pa_context_disconnect(_context);
        pa_context_unref(_context);
    }
    if (_timeEvent != nullptr)
        _api->time_free(_timeEvent);
    if (_wakeEvent != nullptr)
        _api->io_free(_wakeEvent);
    pa_mainloop_free(_loop);
}

void PulseClient::run() {
    _wakeEvent = _api->io_new(
        _api, _wake, PA_IO_EVENT_INPUT,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* self) {
            static_cast<PulseClient*>(self)->wakened();
        },
        this);
    connect();
    pa_mainloop_run(_loop, nullptr);
}

void PulseClient::connect() {
    const PulseFormat::Properties about = PulseFormat::properties({
        {PA_PROP_APPLICATION_NAME, "Selvane"},
        {PA_PROP_APPLICATION_ID, "com.lorbin.selvane"},
        {PA_PROP_APPLICATION_ICON_NAME, "com.lorbin.selvane"},
    });
    // They are lost if there is no connection.
    _sources = _host.takeSources();
    static_cast<void>(_host.streams());
    _context = pa_context_new_with_proplist(_api, "Selvane", about.get());
    pa_context_set_state_callback(
        _context, [](pa_context*, void* self) { static_cast<PulseClient*>(self)->stateChanged(); }, this);
    waitFor(patience);
    if (pa_context_connect(_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        _host.connectionFailed(pa_strerror(pa_context_errno(_context)));
        quit();
    }
}

void PulseClient::wakened() {
    eventfd_t count = 0;
    (void)eventfd_read(_wake, &count);
    if (_host.isEnding()) {
        quit();
        return;
    }
    std::ranges::move(_host.takeSources(), std::back_inserter(_sources));
    if (_isReady)
        followHost();
    else
        static_cast<void>(_host.streams());
}

void PulseClient::stateChanged() {
    switch (pa_context_get_state(_context)) {
    case PA_CONTEXT_READY:
        _isReady = true;
        _host.connectionSucceeded();
        followHost();
        break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        // The end of a server that was there is no news: the next sound looks for another one.
        if (!_isReady)
            _host.connectionFailed(pa_strerror(pa_context_errno(_context)));
        quit();
        break;
    case PA_CONTEXT_UNCONNECTED:
    case PA_CONTEXT_CONNECTING:
    case PA_CONTEXT_AUTHORIZING:
    case PA_CONTEXT_SETTING_NAME:
        break;
    }
}

void PulseClient::followHost() {
    startSounds();
    followStreams();
    _serverIsActive = false;
    waitFor(isPlaying() ? patience : afterglow);
}

void PulseClient::startSounds() {
    for (auto& source : std::exchange(_sources, {})) {
        auto sound = std::make_unique<Sound>(*this, std::move(source));
        if (sound->start())
            _sounds.push_back(std::move(sound));
    }
}

void PulseClient::followStreams() {
    const std::vector<StreamWish> wishes = _host.streams();
    std::erase_if(_streams, [&wishes](const auto& held) {
        return std::ranges::find(wishes, held->wish().stream, &StreamWish::stream) == wishes.end();
    });
    for (const StreamWish& wish : wishes) {
        const auto held =
            std::ranges::find(_streams, wish.stream, [](const auto& each) { return each->wish().stream; });
        if (held != _streams.end())
            (*held)->follow(wish);
        else if (wish.start != 0)
            startStream(wish);
    }
}

void PulseClient::startStream(const StreamWish& wish) {
    auto stream = std::make_unique<PulseStream>(static_cast<PulseStream::Owner&>(*this), wish);
    if (stream->connect(_context))
        _streams.push_back(std::move(stream));
    else
        _host.streamFailed(wish, pa_strerror(pa_context_errno(_context)));
}

void PulseClient::soundEnded(const Sound& sound) {
    std::erase_if(_sounds, [&sound](const auto& held) { return held.get() == &sound; });
    if (!isPlaying())
        waitFor(afterglow);
}

void PulseClient::streamEnded(PulseStream& stream, const std::string& reason) {
    if (stream.runs())
        _host.streamFailed(stream.wish(), reason);
    std::erase_if(_streams, [&stream](const auto& held) { return held.get() == &stream; });
    if (!isPlaying())
        waitFor(afterglow);
}

void PulseClient::streamIsAsked() {
    _serverIsActive = true;
    if (std::exchange(_deviceStandsStill, false))
        waitFor(patience);
}

bool PulseClient::isPlaying() const {
    return !_sounds.empty() ||
           std::ranges::any_of(_streams, [](const auto& stream) { return stream->runs(); });
}

void PulseClient::waitFor(std::chrono::microseconds time) {
    _deviceStandsStill = false;
    waitUntil(pa_rtclock_now() + static_cast<pa_usec_t>(time.count()));
}

void PulseClient::waitUntil(std::uint64_t moment) {
    if (_timeEvent != nullptr) {
        pa_context_rttime_restart(_context, _timeEvent, moment);
        return;
    }
    _timeEvent = pa_context_rttime_new(
        _context, moment,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
            static_cast<PulseClient*>(self)->timeIsUp();
        },
        this);
}

void PulseClient::timeIsUp() {
    if (!_isReady)
        _host.connectionFailed("the sound server doesn't answer");
    if (!_isReady || !isPlaying()) {
        quit();
        return;
    }
    if (std::exchange(_serverIsActive, false)) {
        waitFor(patience);
        return;
    }
    // No sound is caught up on later.
    _sounds.clear();
    if (_question != nullptr || !isPlaying())
        quit();
    else
        askServer();
}

void PulseClient::askServer() {
    _question = pa_context_get_server_info(
        _context,
        [](pa_context*, const pa_server_info*, void* self) {
            static_cast<PulseClient*>(self)->serverAnswered();
        },
        this);
    if (_question == nullptr)
        quit();
    else
        waitFor(patience);
}

void PulseClient::serverAnswered() {
    pa_operation_unref(std::exchange(_question, nullptr));
    if (!isPlaying() || _serverIsActive)
        return;
    _deviceStandsStill = true;
    waitUntil(PA_USEC_INVALID);
}

void PulseClient::quit() {
    pa_mainloop_quit(_loop, 0);
}

// A sound

PulseClient::Sound::Sound(PulseClient& client, std::shared_ptr<AudioSource> source)
    : _client(client), _source(std::move(source)) {}

PulseClient::Sound::~Sound() {
    if (_draining != nullptr) {
        pa_operation_cancel(_draining);
        pa_operation_unref(_draining);
    }
}

bool PulseClient::Sound::start() {
    // What ends a phase counts among the sounds that the system makes, and is as loud as the user wants
    // these.
    _stream = PulsePlayback::connect(
        _client._context, AudioOutput::framesPerSecond, "event",
        [](pa_stream*, void* self) { static_cast<Sound*>(self)->stateChanged(); },
        [](pa_stream*, std::size_t size, void* self) { static_cast<Sound*>(self)->write(size); }, this);
    return _stream != nullptr;
}

void PulseClient::Sound::stateChanged() {
    switch (pa_stream_get_state(_stream.get())) {
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        end();
        break;
    case PA_STREAM_UNCONNECTED:
    case PA_STREAM_CREATING:
    case PA_STREAM_READY:
        break;
    }
}

void PulseClient::Sound::write(std::size_t size) {
    _client._serverIsActive = true;
    while (!_isOver && size >= sizeof(AudioFrame)) {
        void* data = nullptr;
        std::size_t room = size;
        if (pa_stream_begin_write(_stream.get(), &data, &room) < 0 || room < sizeof(AudioFrame)) {
            end();
            return;
        }
        const std::span frames(static_cast<AudioFrame*>(data),
                               std::min(room / sizeof(AudioFrame), AudioSource::longestPiece));
        const std::size_t count = _source->render(frames);
        _isOver = count < frames.size();
        const std::size_t written = count * sizeof(AudioFrame);
        if (written == 0)
            pa_stream_cancel_write(_stream.get());
        else
            pa_stream_write(_stream.get(), data, written, nullptr, 0, PA_SEEK_RELATIVE);
        size -= std::min(size, written);
    }
    if (_isOver)
        drain();
}

void PulseClient::Sound::drain() {
    pa_stream_set_write_callback(_stream.get(), nullptr, nullptr);
    _draining = pa_stream_drain(
        _stream.get(), [](pa_stream*, int, void* self) { static_cast<Sound*>(self)->drained(); }, this);
    if (_draining == nullptr)
        end();
}

void PulseClient::Sound::drained() {
    pa_operation_unref(std::exchange(_draining, nullptr));
    end();
}

} // namespace selvane
