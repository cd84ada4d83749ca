#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/SoundPlayer.h"

namespace selvane {

/// Plays the sounds of `EndSounds`. Two that follow each other closely are both heard.
class EndSoundPlayer final : public SoundPlayer {
public:
    /// `output` outlives the player.
    explicit EndSoundPlayer(AudioOutput& output) : _output(output) {}

    void play(std::string_view name) override;

private:
    AudioOutput& _output;
};

} // namespace selvane
