#pragma once

#include <pulse/stream.h>

#include <cstdint>
#include <memory>

namespace selvane::PulsePlayback {

/// Cuts the stream off. Its callbacks are not called any more.
struct Close {
    void operator()(pa_stream* stream) const;
};
using Handle = std::unique_ptr<pa_stream, Close>;

/// Connects a stream that plays, in the form and with the buffer of `PulseFormat`. `role` is the media role,
/// and both callbacks are given `receiver`. Null if the server takes no more streams.
[[nodiscard]] Handle connect(pa_context* context, std::uint32_t framesPerSecond, const char* role,
                             pa_stream_notify_cb_t stateChanged, pa_stream_request_cb_t write,
                             void* receiver);

} // namespace selvane::PulsePlayback
