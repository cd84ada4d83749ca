#pragma once

#include "SelvaneCore/Signal.h"

#include <tl/expected.hpp>

#include <string>

namespace selvane {

/// Sound without an end that goes to an `AudioOutput`, and can be paused and resumed. Main thread; returns at
/// once, whatever the sound system does. Signals come from the main loop, never inside of a call; their
/// listeners may call anything, and end the stream.
///
/// A stream is paused, runs, or has lost its device and waits for one. As long as it waits, the output looks
/// for a device, ever more seldom, and within two seconds of a sound server's appearance.
class AudioStream {
public:
    /// Cuts off what plays.
    virtual ~AudioStream() = default;

    /// From 0 to 1, also of a stream that doesn't run. A change is heard when what lies ready has been
    /// played, a quarter of a second later, and without a click.
    virtual void setVolume(float volume) = 0;

    /// True from `start` until `pause`, or until the device is lost or turns out not to be had.
    [[nodiscard]] virtual bool isRunning() const = 0;

    /// Plays on from where the source stands; from now on the source is asked on a thread of the output's.
    /// Nothing happens if it runs already. The error says why that can't be, now or later: it stays paused.
    [[nodiscard]] virtual tl::expected<void, std::string> start() = 0;

    /// Stops at once and waits for nothing. The thread and the device are given back when nothing has played
    /// for `AudioOutput::afterglow`. Harmless when it doesn't run.
    virtual void pause() = 0;

    /// It has stopped or can't be started again, for that reason. Told once, until it has been heard again or
    /// was paused.
    Signal<std::string> failed;

    /// It had stopped, and now there is a device to play on, maybe another one: it starts again only when it
    /// is told to.
    Signal<> configurationChanged;
};

} // namespace selvane
