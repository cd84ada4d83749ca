#include "Selvane/UI/Popover/MusicRowModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/App/PlatformText.h"
#include "Selvane/UI/QtText.h"

#include <algorithm>
#include <array>

namespace selvane {

namespace {

/// What the menu offers below the ambient sounds.
constexpr std::array offeredSources{MusicSource::appleMusic, MusicSource::spotify, MusicSource::none};

QString titleOf(AmbientSound sound) {
    switch (sound) {
    case AmbientSound::rain:
        return QStringLiteral("Rain");
    case AmbientSound::white:
        return QStringLiteral("White noise");
    case AmbientSound::pink:
        return QStringLiteral("Pink noise");
    case AmbientSound::brown:
        return QStringLiteral("Brown noise");
    }
    return {};
}

QString titleOf(MusicSource source, AmbientSound sound) {
    switch (source) {
    case MusicSource::ambient:
        return titleOf(sound);
    case MusicSource::appleMusic:
        return qtText(PlatformText::musicPlayer.here());
    case MusicSource::spotify:
        return QStringLiteral("Spotify");
    case MusicSource::none:
        return QStringLiteral("No music");
    }
    return {};
}

QString symbolOf(MusicSource source, AmbientSound sound) {
    switch (source) {
    case MusicSource::ambient:
        return sound == AmbientSound::rain ? QStringLiteral("cloud.rain") : QStringLiteral("waveform");
    case MusicSource::appleMusic:
    case MusicSource::spotify:
        return QStringLiteral("music.note");
    case MusicSource::none:
        return QStringLiteral("speaker.slash");
    }
    return {};
}

} // namespace

MusicRowModel::MusicRowModel(AppModel& model, QObject* parent) : QObject(parent), _model(model) {
    for (Signal<>* const signal : {&model.settings().changed, &model.music().changed})
        _subscriptions.push_back(signal->subscribe([this] { refresh(); }));
    refresh();
}

void MusicRowModel::refresh() {
    const AppSettings& settings = _model.settings();
    std::vector<MenuChoices::Choice> sounds;
    for (const AmbientSound sound : allCases<AmbientSound>)
        sounds.push_back({titleOf(sound), settings.musicSource() == MusicSource::ambient &&
                                              settings.ambientSound() == sound});
    _sounds.setChoices(std::move(sounds));
    std::vector<MenuChoices::Choice> sources;
    for (const MusicSource source : offeredSources)
        sources.push_back({titleOf(source, {}), settings.musicSource() == source});
    _sources.setChoices(std::move(sources));
    Q_EMIT changed();
}

QString MusicRowModel::symbol() const {
    return symbolOf(_model.settings().musicSource(), _model.settings().ambientSound());
}

QString MusicRowModel::title() const {
    return titleOf(_model.settings().musicSource(), _model.settings().ambientSound());
}

bool MusicRowModel::isPlaying() const {
    return _model.music().isPlaying();
}

MusicRowModel::Extra MusicRowModel::extra() const {
    switch (_model.settings().musicSource()) {
    case MusicSource::ambient:
        return Volume;
    case MusicSource::appleMusic:
    case MusicSource::spotify:
        return OpenPlayer;
    case MusicSource::none:
        break;
    }
    return Nothing;
}

QString MusicRowModel::openTooltip() const {
    return extra() == OpenPlayer ? QStringLiteral("Open ") + title() : QString();
}

QString MusicRowModel::volumeLabel() const {
    return QStringLiteral("Volume");
}

double MusicRowModel::volume() const {
    return _model.settings().musicVolume();
}

void MusicRowModel::setVolume(double volume) {
    // What is not a number is no volume.
    if (volume >= 0 && volume <= 1)
        _model.settings().musicVolume.set(volume);
}

QString MusicRowModel::soundSymbol() const {
    return isPlaying() ? QStringLiteral("speaker.wave.2.fill") : QStringLiteral("speaker.slash");
}

QString MusicRowModel::soundTooltip() const {
    return isPlaying() ? QStringLiteral("Turn sound off") : QStringLiteral("Turn sound on");
}

bool MusicRowModel::canPlay() const {
    return _model.settings().musicSource() != MusicSource::none;
}

QString MusicRowModel::pickerLabel() const {
    return QStringLiteral("Ambient");
}

void MusicRowModel::chooseSound(int row) {
    constexpr auto sounds = allCases<AmbientSound>;
    if (row < 0 || static_cast<std::size_t>(row) >= sounds.size())
        return;
    // The sound first: the player must not begin with the old one.
    _model.settings().ambientSound.set(sounds.at(static_cast<std::size_t>(row)));
    _model.settings().musicSource.set(MusicSource::ambient);
}

void MusicRowModel::chooseSource(int row) {
    if (row >= 0 && static_cast<std::size_t>(row) < offeredSources.size())
        _model.settings().musicSource.set(offeredSources.at(static_cast<std::size_t>(row)));
}

void MusicRowModel::openPlayer() {
    _model.music().openPlayer();
}

void MusicRowModel::toggleSound() {
    if (isPlaying())
        _model.music().pause();
    else
        _model.music().play();
}

} // namespace selvane
