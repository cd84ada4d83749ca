#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/AudioStream.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {

/// A stream whose device exists only in a test, which hears as many frames as it asks for.
class FakeAudioStream final : public AudioStream {
public:
    FakeAudioStream(std::shared_ptr<AudioSource> source, double framesPerSecond)
        : _source(std::move(source)), _framesPerSecond(framesPerSecond) {}
    ~FakeAudioStream() override {
        if (onEnd)
            onEnd();
    }

    /// Called at the stream's end.
    std::function<void()> onEnd;

    void setVolume(float volume) override { _volume = volume; }
    [[nodiscard]] bool isRunning() const override { return _isRunning; }

    [[nodiscard]] tl::expected<void, std::string> start() override {
        ++_starts;
        if (_refusal)
            return tl::unexpected(*_refusal);
        _isRunning = true;
        return {};
    }

    void pause() override {
        ++_pauses;
        _isRunning = false;
    }

    /// Starts are refused from now on, until they aren't any more.
    void refuseStarts(std::string reason) { _refusal = std::move(reason); }
    void allowStarts() { _refusal.reset(); }

    /// The device is gone.
    void loseDevice() { _isRunning = false; }

    /// There is no device, as turns out only now.
    void failLater(std::string reason) {
        _isRunning = false;
        failed.emit(std::move(reason));
    }

    /// Another device takes the place of the one that was there.
    void changeDevice() {
        _isRunning = false;
        configurationChanged.emit();
    }

    /// What the device plays next, before its volume; nothing while the stream doesn't run.
    std::vector<AudioFrame> hear(std::size_t frames) {
        std::vector<AudioFrame> heard;
        while (_isRunning && heard.size() < frames) {
            const std::size_t before = heard.size();
            const std::size_t piece = std::min(frames - before, AudioSource::longestPiece);
            heard.resize(before + piece);
            const std::size_t count = _source->render(std::span(heard).last(piece));
            if (count < piece) {
                heard.resize(before + count);
                break;
            }
        }
        return heard;
    }

    [[nodiscard]] double framesPerSecond() const { return _framesPerSecond; }
    [[nodiscard]] AudioSource& source() { return *_source; }
    [[nodiscard]] float volume() const { return _volume; }
    /// Calls of `start`, also in vain, and of `pause`.
    [[nodiscard]] int starts() const { return _starts; }
    [[nodiscard]] int pauses() const { return _pauses; }

private:
    std::shared_ptr<AudioSource> _source;
    double _framesPerSecond;
    float _volume = -1;
    bool _isRunning = false;
    std::optional<std::string> _refusal;
    int _starts = 0;
    int _pauses = 0;
};

} // namespace selvane::test
