#pragma once

#include "Selvane/Music/NoiseSynth.h"
#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Subscription.h"

#include <memory>

namespace selvane {

/// Plays noise, which fades in and out. Main thread; the output's own thread sees nothing but the synth.
class AmbientPlayer {
public:
    /// Starts nothing. Both outlive the player. The noise keeps the rate that the output has now.
    AmbientPlayer(AudioOutput& output, Scheduler& scheduler);
    AmbientPlayer(const AmbientPlayer&) = delete;
    AmbientPlayer& operator=(const AmbientPlayer&) = delete;
    ~AmbientPlayer();

    /// Fades in, from where a fade out stands. A stream that can't be started is in the log, and is tried
    /// again with the next `play` or when the device changes.
    void play();

    /// Fades out. The stream is paused when nothing can be heard any more, three seconds after the last call.
    void pause();

    /// Both are heard at once, without a fade, and kept for the next `play`.
    void setSound(NoiseKind sound);
    void setVolume(float volume);

    [[nodiscard]] bool wantsPlayback() const { return _wantsPlayback; }
    [[nodiscard]] NoiseKind sound() const { return _sound; }
    [[nodiscard]] float volume() const { return _volume; }

private:
    void fadeIn();
    void fadeTo(float gain);
    [[nodiscard]] bool startEngine();

    Scheduler& _scheduler;
    /// Shared with the stream.
    std::shared_ptr<NoiseSynth> _synth;
    std::unique_ptr<AudioStream> _stream;
    Subscription _stopTask;
    Subscription _failureObserver;
    Subscription _configObserver;
    bool _wantsPlayback = false;
    float _volume = 0.6F;
    NoiseKind _sound = NoiseKind::rain;
};

} // namespace selvane
