#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Support/FakeAudioStream.h"

#include <memory>
#include <utility>
#include <vector>

namespace selvane::test {

/// An output that nobody hears: it keeps what it is given to play.
struct FakeAudioOutput final : AudioOutput {
    [[nodiscard]] double sampleRate() const override { return rate; }

    void play(std::shared_ptr<AudioSource> source) override { sources.push_back(std::move(source)); }

    [[nodiscard]] std::unique_ptr<AudioStream> stream(std::shared_ptr<AudioSource> source,
                                                      double sourceRate) override {
        auto made = std::make_unique<FakeAudioStream>(std::move(source), sourceRate);
        streams.push_back(made.get());
        return made;
    }

    double rate = AudioOutput::framesPerSecond;
    std::vector<std::shared_ptr<AudioSource>> sources;
    /// In the order in which they were made. Whoever had them made owns them, and may have ended some.
    std::vector<FakeAudioStream*> streams;
};

} // namespace selvane::test
