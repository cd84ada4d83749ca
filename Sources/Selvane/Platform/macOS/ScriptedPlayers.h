#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/macOS/Osascript.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace selvane {

/// The players of a Mac: Apple Music and Spotify, each driven by small scripts. Main thread.
class ScriptedPlayers final : public ExternalPlayers {
public:
    /// What only the system's own libraries can tell and do.
    struct Applications {
        /// Where the application with that bundle identifier lies, if it is installed.
        std::function<std::optional<std::filesystem::path>(std::string_view bundleIdentifier)> location;
        /// Opens the application there. Returns at once.
        std::function<void(const std::filesystem::path& location)> open;
    };

    explicit ScriptedPlayers(Applications applications, Osascript osascript = Osascript());

    [[nodiscard]] bool isInstalled(ExternalPlayer player) const override;
    void play(ExternalPlayer player, std::string_view playlist) override;
    void pause(ExternalPlayer player) override;
    void open(ExternalPlayer player) override;

private:
    [[nodiscard]] std::optional<std::filesystem::path> location(ExternalPlayer player) const;

    Applications _applications;
    Osascript _osascript;
};

} // namespace selvane
