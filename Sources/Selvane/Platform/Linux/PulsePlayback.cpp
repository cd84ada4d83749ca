#include "Selvane/Platform/Linux/PulsePlayback.h"

#include "Selvane/Platform/Linux/PulseFormat.h"

namespace selvane::PulsePlayback {

void Close::operator()(pa_stream* stream) const {
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_write_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

Handle connect(pa_context* context, std::uint32_t framesPerSecond, const char* role,
               pa_stream_notify_cb_t stateChanged, pa_stream_request_cb_t write, void* receiver) {
    const PulseFormat::Properties about = PulseFormat::properties({{PA_PROP_MEDIA_ROLE, role}});
    const pa_sample_spec format = PulseFormat::format(framesPerSecond);
    const pa_buffer_attr buffer = PulseFormat::buffer(framesPerSecond);
    Handle stream(pa_stream_new_with_proplist(context, "Selvane", &format, nullptr, about.get()));
    if (stream == nullptr || pa_stream_connect_playback(stream.get(), nullptr, &buffer,
                                                        PA_STREAM_ADJUST_LATENCY, nullptr, nullptr) < 0)
        return nullptr;
    pa_stream_set_state_callback(stream.get(), stateChanged, receiver);
    pa_stream_set_write_callback(stream.get(), write, receiver);
    return stream;
}

} // namespace selvane::PulsePlayback
