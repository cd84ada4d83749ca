#include "Selvane/Music/ChosenMusicController.h"

#include <utility>

namespace selvane {

namespace {

/// The player that a source stands for, if it is a program of its own.
std::optional<ExternalPlayer> externalPlayer(MusicSource source) {
    switch (source) {
    case MusicSource::appleMusic:
        return ExternalPlayer::appleMusic;
    case MusicSource::spotify:
        return ExternalPlayer::spotify;
    case MusicSource::ambient:
    case MusicSource::none:
        break;
    }
    return std::nullopt;
}

NoiseKind noiseKind(AmbientSound sound) {
    return static_cast<NoiseKind>(sound);
}

static_assert(static_cast<int>(AmbientSound::rain) == static_cast<int>(NoiseKind::rain));
static_assert(static_cast<int>(AmbientSound::white) == static_cast<int>(NoiseKind::white));
static_assert(static_cast<int>(AmbientSound::pink) == static_cast<int>(NoiseKind::pink));
static_assert(static_cast<int>(AmbientSound::brown) == static_cast<int>(NoiseKind::brown));

} // namespace

ChosenMusicController::ChosenMusicController(AppSettings& settings, AudioOutput& output, Scheduler& scheduler,
                                             ExternalPlayers& players)
    : _settings(settings), _output(output), _scheduler(scheduler), _players(players) {}

void ChosenMusicController::play() {
    const MusicSource source = _settings.musicSource();
    if (_activeSource == source)
        return;
    const bool wasPlaying = isPlaying();
    stop();
    if (start(source))
        _activeSource = source;
    if (isPlaying() != wasPlaying)
        changed.emit();
}

void ChosenMusicController::pause() {
    if (!isPlaying())
        return;
    stop();
    changed.emit();
}

void ChosenMusicController::syncSettings() {
    if (_ambient)
        applySettings(*_ambient);
    if (isPlaying())
        play();
}

void ChosenMusicController::openPlayer() {
    if (const auto player = externalPlayer(_settings.musicSource()))
        _players.open(*player);
}

bool ChosenMusicController::start(MusicSource source) {
    switch (source) {
    case MusicSource::ambient:
        playNoise();
        return true;
    case MusicSource::appleMusic:
    case MusicSource::spotify:
        return playIn(*externalPlayer(source));
    case MusicSource::none:
        break;
    }
    return false;
}

void ChosenMusicController::stop() {
    const auto source = std::exchange(_activeSource, std::nullopt);
    if (!source)
        return;
    if (const auto player = externalPlayer(*source))
        _players.pause(*player);
    else
        _ambient->pause();
}

void ChosenMusicController::playNoise() {
    if (!_ambient)
        _ambient.emplace(_output, _scheduler);
    applySettings(*_ambient);
    _ambient->play();
}

void ChosenMusicController::applySettings(AmbientPlayer& player) const {
    player.setSound(noiseKind(_settings.ambientSound()));
    player.setVolume(static_cast<float>(_settings.musicVolume()));
}

bool ChosenMusicController::playIn(ExternalPlayer player) {
    if (!_players.isInstalled(player))
        return false;
    const std::string& playlist =
        player == ExternalPlayer::spotify ? _settings.spotifyPlaylist() : _settings.appleMusicPlaylist();
    const auto started = _startedPlaylist.find(player);
    const bool resumes = started != _startedPlaylist.end() && started->second == playlist;
    _players.play(player, resumes ? std::string_view() : std::string_view(playlist));
    _startedPlaylist.insert_or_assign(player, playlist);
    return true;
}

} // namespace selvane
