#include "Selvane/Platform/Linux/PulseStream.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/operation.h>
#include <pulse/stream.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace selvane {

PulseStream::PulseStream(Owner& owner, StreamWish wish)
    : _owner(owner), _wish(std::move(wish)), _volume(_wish.stream->volume.load(std::memory_order_relaxed)) {}

bool PulseStream::connect(pa_context* context) {
    _stream = PulsePlayback::connect(
        context, _wish.stream->framesPerSecond, "music",
        [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->stateChanged(); },
        [](pa_stream*, std::size_t size, void* self) { static_cast<PulseStream*>(self)->write(size); }, this);
    return _stream != nullptr;
}

void PulseStream::follow(const StreamWish& wish) {
    const bool ran = runs();
    _wish = wish;
    if (_isReady && ran != runs())
        cork();
}

void PulseStream::cork() {
    pa_operation* const corking = pa_stream_cork(_stream.get(), runs() ? 0 : 1, nullptr, nullptr);
    if (corking != nullptr)
        pa_operation_unref(corking);
    if (runs())
        write(pa_stream_writable_size(_stream.get()));
}

void PulseStream::stateChanged() {
    switch (pa_stream_get_state(_stream.get())) {
    case PA_STREAM_READY:
        _isReady = true;
        if (!runs())
            cork();
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        _owner.streamEnded(
            *this, _isReady ? "" : pa_strerror(pa_context_errno(pa_stream_get_context(_stream.get()))));
        break;
    case PA_STREAM_UNCONNECTED:
    case PA_STREAM_CREATING:
        break;
    }
}

void PulseStream::write(std::size_t bytes) {
    if (!runs() || bytes == static_cast<std::size_t>(-1))
        return;
    _owner.streamIsAsked();
    while (bytes >= sizeof(AudioFrame) && writePiece(bytes)) {
    }
    if (_written > _wish.stream->framesPerSecond)
        _wish.stream->isHeard.store(true, std::memory_order_relaxed);
}

bool PulseStream::writePiece(std::size_t& bytes) {
    void* data = nullptr;
    std::size_t room = std::min(bytes, AudioSource::longestPiece * sizeof(AudioFrame));
    // Refused by a stream that is at its end, which tells that itself.
    if (pa_stream_begin_write(_stream.get(), &data, &room) < 0 || room < sizeof(AudioFrame))
        return false;
    const std::size_t count = std::min(room / sizeof(AudioFrame), AudioSource::longestPiece);
    render({static_cast<AudioFrame*>(data), count});
    const std::size_t written = count * sizeof(AudioFrame);
    if (pa_stream_write(_stream.get(), data, written, nullptr, 0, PA_SEEK_RELATIVE) < 0)
        return false;
    _written += count;
    bytes -= std::min(bytes, written);
    return true;
}

void PulseStream::render(std::span<AudioFrame> frames) {
    const std::size_t count = _wish.stream->source->render(frames);
    // A stream has no end.
    std::ranges::fill(frames.subspan(count), AudioFrame{0, 0});
    const float aim = _wish.stream->volume.load(std::memory_order_relaxed);
    const float before = std::exchange(_volume, aim);
    if (before == aim) {
        for (AudioFrame& frame : frames)
            frame = {aim * frame.left, aim * frame.right};
        return;
    }
    // A jump would be heard as a click.
    const float step = (aim - before) / static_cast<float>(frames.size());
    for (std::size_t index = 0; index < frames.size(); ++index) {
        const float volume = before + static_cast<float>(index + 1) * step;
        frames[index] = {volume * frames[index].left, volume * frames[index].right};
    }
}

} // namespace selvane
