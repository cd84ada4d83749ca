#include "Selvane/Platform/Linux/KnownPlayers.h"

#include "SelvaneCore/Text.h"

#include <algorithm>
#include <array>

namespace selvane::KnownPlayers {

namespace {

// Libraries of music first, since they have something to resume; what plays single files comes last.
constexpr std::array ownMusicPlayers{
    Player{"org.gnome.Rhythmbox3.desktop", "rhythmbox"},
    Player{"rhythmbox.desktop", "rhythmbox"},
    Player{"org.kde.elisa.desktop", "elisa"},
    Player{"org.strawberrymusicplayer.strawberry.desktop", "strawberry"},
    Player{"org.gnome.Lollypop.desktop", "Lollypop"},
    Player{"org.gnome.Music.desktop", "org.gnome.Music"},
    Player{"org.clementine_player.Clementine.desktop", "clementine"},
    Player{"clementine.desktop", "clementine"},
    Player{"io.elementary.music.desktop", "io.elementary.music"},
    Player{"com.github.neithern.g4music.desktop", "com.github.neithern.g4music"},
    Player{"io.github.quodlibet.QuodLibet.desktop", "quodlibet"},
    Player{"quodlibet.desktop", "quodlibet"},
    Player{"org.kde.amarok.desktop", "amarok"},
    Player{"org.kde.juk.desktop", "juk"},
    Player{"com.sayonara-player.Sayonara.desktop", "sayonara"},
    Player{"sayonara.desktop", "sayonara"},
    Player{"com.github.taiko2k.tauonmb.desktop", "tauon"},
    Player{"tauonmb.desktop", "tauon"},
    Player{"pragha.desktop", "pragha"},
    Player{"cantata.desktop", "cantata"},
    Player{"audacious.desktop", "audacious"},
    Player{"qmmp.desktop", "qmmp"},
    Player{"io.bassi.Amberol.desktop", "io.bassi.Amberol"},
    Player{"vlc.desktop", "vlc"},
    Player{"org.videolan.VLC.desktop", "vlc"},
    Player{"vlc_vlc.desktop", "vlc"},
    Player{"mpv.desktop", "mpv", "mpv/scripts/mpris.so"},
};

constexpr std::array spotifyClients{
    Player{"spotify.desktop", "spotify"},
    Player{"com.spotify.Client.desktop", "spotify"},
    Player{"spotify_spotify.desktop", "spotify"},
};

constexpr std::array<std::string_view, 17> others{
    "spotify",        "spotifyd",   "playerctld",    "firefox",  "librewolf",
    "chromium",       "chrome",     "google-chrome", "brave",    "edge",
    "microsoft-edge", "vivaldi",    "opera",         "epiphany", "plasma-browser-integration",
    "falkon",         "kdeconnect",
};

constexpr std::string_view ending = ".desktop";

/// What stands behind the prefix; absent for other names than those of players.
std::optional<std::string> ownPart(std::string_view busName) {
    if (!busName.starts_with(prefix))
        return std::nullopt;
    return Text::lowercased(busName.substr(prefix.size()));
}

} // namespace

std::span<const Player> ownMusic() {
    return ownMusicPlayers;
}

std::span<const Player> spotify() {
    return spotifyClients;
}

std::string name(std::string_view application) {
    for (const std::span<const Player> players : {ownMusic(), spotify()}) {
        const auto found = std::ranges::find(players, application, &Player::application);
        if (found != players.end())
            return std::string(found->name);
    }
    if (application.ends_with(ending))
        application.remove_suffix(ending.size());
    return std::string(application);
}

bool isNamed(std::string_view busName, std::string_view player) {
    const auto own = ownPart(busName);
    if (!own)
        return false;
    const auto isOrBegins = [&own](const std::string& wanted) {
        return *own == wanted || own->starts_with(wanted + ".");
    };
    const std::string wanted = Text::lowercased(player);
    const std::size_t dot = wanted.rfind('.');
    return isOrBegins(wanted) || (dot != std::string::npos && isOrBegins(wanted.substr(dot + 1)));
}

bool playsOwnMusic(std::string_view busName) {
    return ownPart(busName).has_value() && std::ranges::none_of(others, [busName](std::string_view other) {
               return isNamed(busName, other);
           });
}

} // namespace selvane::KnownPlayers
