#include "Selvane/App/EndSoundPlayer.h"

#include "Selvane/App/EndSounds.h"

#include <algorithm>

namespace selvane {

namespace {

class EndSoundSource final : public AudioSource {
public:
    explicit EndSoundSource(const EndSounds::Sound& sound) : _sound(sound) {}

    std::size_t render(std::span<AudioFrame> frames) override {
        const std::size_t count = std::min(frames.size(), _sound.length - _next);
        for (AudioFrame& frame : frames.first(count))
            frame = _sound.frame(_next++);
        return count;
    }

private:
    const EndSounds::Sound& _sound;
    std::size_t _next = 0;
};

} // namespace

void EndSoundPlayer::play(std::string_view name) {
    if (const EndSounds::Sound* const sound = EndSounds::named(name))
        _output.play(std::make_shared<EndSoundSource>(*sound));
}

} // namespace selvane
