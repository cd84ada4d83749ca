#pragma once

#include "Selvane/App/AppSettings.h"
#include "Selvane/App/MusicController.h"
#include "Selvane/Music/AmbientPlayer.h"
#include "Selvane/Platform/AudioOutput.h"
#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/Scheduler.h"

#include <map>
#include <optional>
#include <string>

namespace selvane {

/// Plays what the settings choose: noise of the program's own, or a player of the user's. Knows what it has
/// started itself and doesn't look whether that is heard: a player that fails is in the log only.
class ChosenMusicController final : public MusicController {
public:
    /// What is given lives longer than the controller. Nothing is touched before the first `play`.
    ChosenMusicController(AppSettings& settings, AudioOutput& output, Scheduler& scheduler,
                          ExternalPlayers& players);

    /// Does nothing if the chosen source plays already, and ends another one first. A player that isn't
    /// installed plays nothing.
    void play() override;
    void pause() override;
    void syncSettings() override;
    void openPlayer() override;

    [[nodiscard]] bool isPlaying() const override { return _activeSource.has_value(); }

private:
    /// False if the source plays nothing.
    [[nodiscard]] bool start(MusicSource source);
    /// Ends what plays.
    void stop();
    void playNoise();
    void applySettings(AmbientPlayer& player) const;
    /// Resumes if the player was handed the present playlist before, which keeps the user's place in it.
    [[nodiscard]] bool playIn(ExternalPlayer player);

    AppSettings& _settings;
    AudioOutput& _output;
    Scheduler& _scheduler;
    ExternalPlayers& _players;
    /// Made when it is first asked for.
    std::optional<AmbientPlayer> _ambient;
    /// What plays; absent while nothing does.
    std::optional<MusicSource> _activeSource;
    /// The playlist last handed to each player. Not stored, so that the first play of a process begins the
    /// chosen playlist.
    std::map<ExternalPlayer, std::string> _startedPlaylist;
};

} // namespace selvane
