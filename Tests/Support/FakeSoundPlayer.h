#pragma once

#include "Selvane/Platform/SoundPlayer.h"

#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {

/// Remembers the names of the sounds that were played.
class FakeSoundPlayer final : public SoundPlayer {
public:
    void play(std::string_view name) override { played.emplace_back(name); }

    std::vector<std::string> played;
};

} // namespace selvane::test
