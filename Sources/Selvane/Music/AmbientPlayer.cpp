#include "Selvane/Music/AmbientPlayer.h"

#include "Selvane/Platform/AudioStream.h"
#include "SelvaneCore/Log.h"

#include <array>
#include <atomic>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace selvane {

namespace {

/// Six time constants of the fade.
constexpr Seconds fadeOut{3};

/// Where the device doesn't tell.
constexpr double usualRate = 44'100;

double rateFor(const AudioOutput& output) {
    const double rate = output.sampleRate();
    return rate > 0 ? rate : usualRate;
}

/// The synth's two channels as the frames of a stream.
class NoiseSource final : public AudioSource {
public:
    explicit NoiseSource(std::shared_ptr<NoiseSynth> synth) : _synth(std::move(synth)) {}

    std::size_t render(std::span<AudioFrame> frames) override {
        assert(frames.size() <= longestPiece);
        _synth->render(frames.size(), std::array{_left.data(), _right.data()});
        for (std::size_t index = 0; index < frames.size(); ++index)
            frames[index] = {_left[index], _right[index]};
        return frames.size();
    }

private:
    std::shared_ptr<NoiseSynth> _synth;
    std::array<float, longestPiece> _left{};
    std::array<float, longestPiece> _right{};
};

void logFailure(const std::string& reason) {
    Log::line("couldn't start audio engine: " + reason);
}

} // namespace

AmbientPlayer::AmbientPlayer(AudioOutput& output, Scheduler& scheduler)
    : _scheduler(scheduler),
      _synth(std::make_shared<NoiseSynth>(static_cast<float>(rateFor(output)))),
      _stream(output.stream(std::make_shared<NoiseSource>(_synth), rateFor(output))) {
    _stream->setVolume(_volume);
    _failureObserver = _stream->failed.subscribe(logFailure);
    _configObserver = _stream->configurationChanged.subscribe([this] {
        if (_wantsPlayback)
            fadeIn();
    });
}

AmbientPlayer::~AmbientPlayer() = default;

void AmbientPlayer::play() {
    _wantsPlayback = true;
    _stopTask.end();
    fadeIn();
}

void AmbientPlayer::pause() {
    _wantsPlayback = false;
    fadeTo(0);
    _stopTask = _scheduler.after(fadeOut, [this] { _stream->pause(); });
}

void AmbientPlayer::setSound(NoiseKind sound) {
    _sound = sound;
    _synth->kindRaw.store(static_cast<int>(sound), std::memory_order_relaxed);
}

void AmbientPlayer::setVolume(float volume) {
    _volume = volume;
    _stream->setVolume(volume);
}

void AmbientPlayer::fadeIn() {
    // Also when the device changes, so that what a refused start left silent is heard.
    if (startEngine())
        fadeTo(1);
}

void AmbientPlayer::fadeTo(float gain) {
    _synth->targetGainBits.store(std::bit_cast<std::uint32_t>(gain), std::memory_order_relaxed);
}

bool AmbientPlayer::startEngine() {
    if (_stream->isRunning())
        return true;
    const auto started = _stream->start();
    if (!started)
        logFailure(started.error());
    return started.has_value();
}

} // namespace selvane
