#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Support/Journal.h"

#include <set>
#include <string>
#include <string_view>

namespace selvane::test {

/// Players that play nothing. Each call is noted, as "play spotify: text", "play appleMusic: " for no text,
/// "pause spotify", "open appleMusic". Whether the player is installed changes nothing of that.
class FakeExternalPlayers final : public ExternalPlayers {
public:
    void install(ExternalPlayer player) { _installed.insert(player); }
    void uninstall(ExternalPlayer player) { _installed.erase(player); }

    [[nodiscard]] bool isInstalled(ExternalPlayer player) const override {
        return _installed.contains(player);
    }
    void play(ExternalPlayer player, std::string_view playlist) override {
        journal.note("play " + name(player) + ": " + std::string(playlist));
    }
    void pause(ExternalPlayer player) override { journal.note("pause " + name(player)); }
    void open(ExternalPlayer player) override { journal.note("open " + name(player)); }

    Journal journal;

private:
    static std::string name(ExternalPlayer player) {
        switch (player) {
        case ExternalPlayer::appleMusic:
            return "appleMusic";
        case ExternalPlayer::spotify:
            return "spotify";
        }
        return {};
    }

    std::set<ExternalPlayer> _installed;
};

} // namespace selvane::test
