#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <memory>
#include <string>

namespace selvane {

/// An output whose plugin is loaded when something is first played. Without the plugin nothing is heard, and
/// the log says so once.
class LazyAudioOutput final : public AudioOutput {
public:
    /// `plugin` is the path of the plugin's file.
    explicit LazyAudioOutput(std::string plugin);

    void play(std::shared_ptr<AudioSource> source) override;

private:
    std::string _plugin;
    bool _isLoaded = false;
    std::unique_ptr<AudioOutput> _output;
};

} // namespace selvane
