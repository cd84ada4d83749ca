#include "Selvane/Platform/Linux/PulseClient.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/rtclock.h>
#include <pulse/stream.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>

namespace selvane {

namespace {

using namespace std::chrono_literals;

/// How long a server may take to answer, or to ask for more of what plays.
constexpr std::chrono::microseconds patience = 5s;
/// How long the connection outlives the last sound.
constexpr std::chrono::microseconds afterglow = 3s;

constexpr pa_sample_spec format{PA_SAMPLE_FLOAT32NE, AudioOutput::framesPerSecond, 2};
static_assert(sizeof(AudioFrame) == 2 * sizeof(float));

constexpr std::uint32_t bytes(std::chrono::milliseconds time) {
    return static_cast<std::uint32_t>(time.count() * AudioOutput::framesPerSecond / 1000) *
           static_cast<std::uint32_t>(sizeof(AudioFrame));
}

/// The server's own choice.
constexpr std::uint32_t automatic = static_cast<std::uint32_t>(-1);

/// A fifth of a second lies ready with the server, so that a busy machine makes no gap.
constexpr pa_buffer_attr buffer{
    .maxlength = automatic,
    .tlength = bytes(200ms),
    .prebuf = automatic,
    .minreq = bytes(100ms),
    .fragsize = automatic,
};

using Properties = std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)>;

Properties properties(std::initializer_list<std::pair<const char*, const char*>> values) {
    Properties list(pa_proplist_new(), pa_proplist_free);
    for (const auto& [key, value] : values)
        pa_proplist_sets(list.get(), key, value);
    return list;
}

} // namespace

// The connection

PulseClient::PulseClient(AudioClientHost& host, int wake)
    : _host(host), _wake(wake), _loop(pa_mainloop_new()), _api(pa_mainloop_get_api(_loop)) {}

PulseClient::~PulseClient() {
    _sounds.clear();
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
    const Properties about = properties({
        {PA_PROP_APPLICATION_NAME, "Selvane"},
        {PA_PROP_APPLICATION_ID, "com.lorbin.selvane"},
        {PA_PROP_APPLICATION_ICON_NAME, "com.lorbin.selvane"},
    });
    _sources = _host.takeSources();
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
        startSounds();
}

void PulseClient::stateChanged() {
    switch (pa_context_get_state(_context)) {
    case PA_CONTEXT_READY:
        _isReady = true;
        _host.connectionSucceeded();
        startSounds();
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

void PulseClient::startSounds() {
    for (auto& source : std::exchange(_sources, {})) {
        auto sound = std::make_unique<Sound>(*this, std::move(source));
        if (sound->start())
            _sounds.push_back(std::move(sound));
    }
    _serverIsActive = false;
    waitFor(_sounds.empty() ? afterglow : patience);
}

void PulseClient::soundEnded(const Sound& sound) {
    std::erase_if(_sounds, [&sound](const auto& held) { return held.get() == &sound; });
    if (_sounds.empty())
        waitFor(afterglow);
}

void PulseClient::waitFor(std::chrono::microseconds time) {
    const auto moment = pa_rtclock_now() + static_cast<pa_usec_t>(time.count());
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
    if (!_isReady || _sounds.empty() || !std::exchange(_serverIsActive, false))
        quit();
    else
        waitFor(patience);
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
    if (_stream == nullptr)
        return;
    pa_stream_set_state_callback(_stream, nullptr, nullptr);
    pa_stream_set_write_callback(_stream, nullptr, nullptr);
    pa_stream_disconnect(_stream);
    pa_stream_unref(_stream);
}

bool PulseClient::Sound::start() {
    // What ends a phase counts among the sounds that the system makes, and is as loud as the user wants
    // these.
    const Properties about = properties({{PA_PROP_MEDIA_ROLE, "event"}});
    _stream = pa_stream_new_with_proplist(_client._context, "Selvane", &format, nullptr, about.get());
    if (_stream == nullptr)
        return false;
    if (pa_stream_connect_playback(_stream, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY, nullptr, nullptr) < 0)
        return false;
    pa_stream_set_state_callback(
        _stream, [](pa_stream*, void* self) { static_cast<Sound*>(self)->stateChanged(); }, this);
    pa_stream_set_write_callback(
        _stream, [](pa_stream*, std::size_t size, void* self) { static_cast<Sound*>(self)->write(size); },
        this);
    return true;
}

void PulseClient::Sound::stateChanged() {
    switch (pa_stream_get_state(_stream)) {
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
        if (pa_stream_begin_write(_stream, &data, &room) < 0 || room < sizeof(AudioFrame)) {
            end();
            return;
        }
        const std::span frames(static_cast<AudioFrame*>(data), room / sizeof(AudioFrame));
        const std::size_t count = _source->render(frames);
        _isOver = count < frames.size();
        const std::size_t written = count * sizeof(AudioFrame);
        if (written == 0)
            pa_stream_cancel_write(_stream);
        else
            pa_stream_write(_stream, data, written, nullptr, 0, PA_SEEK_RELATIVE);
        size -= std::min(size, written);
    }
    if (_isOver)
        drain();
}

void PulseClient::Sound::drain() {
    pa_stream_set_write_callback(_stream, nullptr, nullptr);
    _draining = pa_stream_drain(
        _stream, [](pa_stream*, int, void* self) { static_cast<Sound*>(self)->drained(); }, this);
    if (_draining == nullptr)
        end();
}

void PulseClient::Sound::drained() {
    pa_operation_unref(std::exchange(_draining, nullptr));
    end();
}

} // namespace selvane
