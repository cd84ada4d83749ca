#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/Linux/MprisDesk.h"

#include <QtCore/QObject>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// Which program is meant by one of the two external players. Spotify is the client of that name. The other
/// is the music player that the user chose; else the one that plays now; else, if it still runs, the one that
/// was driven last; else the first that is installed, beginning with the desktop's choice for music files.
/// Main thread; never waits.
class PlayerSearch final : public QObject {
    Q_OBJECT
public:
    struct Found {
        /// On the bus, if it runs.
        std::string busName = {};
        /// The desktop entry by which it is started, if it doesn't run, and the name that it will have on the
        /// bus, by `KnownPlayers::isNamed`.
        std::string application = {};
        std::string name = {};
    };

    /// `last` is the name on the bus of the player that was driven last; may be empty. `onFound` is called
    /// once, with nothing if there is no player or no bus, as long as this object lives.
    PlayerSearch(const MprisDesk& desk, ExternalPlayer player, std::string last,
                 std::function<void(std::optional<Found>)> onFound);

    void begin();

    /// The desktop entry of the player that would be started if none ran; empty if none is installed. Looks
    /// at files; the desktop's choice is looked up first, or only if no player of the list is there.
    enum class Order { asListed, desktopsChoiceFirst };
    [[nodiscard]] static std::string installed(const MprisDesk& desk, ExternalPlayer player, Order order);

private:
    void choose(std::vector<std::string> names);
    void askWhoPlays();
    void finish();

    const MprisDesk& _desk;
    ExternalPlayer _player;
    std::string _last;
    std::function<void(std::optional<Found>)> _onFound;

    /// The name of the only player that is wanted, if it can only be that.
    std::string _wanted;
    /// Who runs and may be meant, the likelier first.
    std::vector<std::string> _candidates;
    std::size_t _answers = 0;
    std::vector<bool> _plays;
};

} // namespace selvane
