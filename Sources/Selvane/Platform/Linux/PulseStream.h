#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "Selvane/Platform/Linux/PulsePlayback.h"

#include <cstddef>
#include <span>
#include <string>

namespace selvane {

/// A stream on its way to the server, on one connection. Lives on the client's thread.
class PulseStream {
public:
    class Owner {
    public:
        /// The server asks for more.
        virtual void streamIsAsked() = 0;
        /// The server has ended it or didn't take it, which is in `reason` if it never played. The owner ends
        /// the object.
        virtual void streamEnded(PulseStream& stream, const std::string& reason) = 0;

    protected:
        ~Owner() = default;
    };

    /// `wish` is to be started.
    PulseStream(Owner& owner, StreamWish wish);
    PulseStream(const PulseStream&) = delete;
    PulseStream& operator=(const PulseStream&) = delete;

    /// Called once. False if the server takes no more streams.
    [[nodiscard]] bool connect(pa_context* context);

    /// A pause keeps what lies ready, for the next start.
    void follow(const StreamWish& wish);

    [[nodiscard]] const StreamWish& wish() const { return _wish; }
    [[nodiscard]] bool runs() const { return _wish.start != 0; }

private:
    void stateChanged();
    void cork();
    void write(std::size_t bytes);
    [[nodiscard]] bool writePiece(std::size_t& bytes);
    void render(std::span<AudioFrame> frames);

    Owner& _owner;
    StreamWish _wish;
    PulsePlayback::Handle _stream;
    bool _isReady = false;
    /// Of the last frame that was made.
    float _volume;
    /// Frames that the server got.
    std::size_t _written = 0;
};

} // namespace selvane
