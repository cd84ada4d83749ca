#include "Selvane/Platform/Linux/LazyAudioOutput.h"

#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "SelvaneCore/Log.h"

#include <QtCore/QPluginLoader>
#include <QtCore/QString>

#include <utility>

namespace selvane {

namespace {

std::unique_ptr<AudioOutput> load(const std::string& plugin) {
    QPluginLoader loader(QString::fromStdString(plugin));
    auto* const factory = qobject_cast<AudioOutputFactory*>(loader.instance());
    if (factory == nullptr) {
        Log::line("couldn't load what plays sounds: " + loader.errorString().toStdString());
        return nullptr;
    }
    return factory->makeAudioOutput();
}

} // namespace

LazyAudioOutput::LazyAudioOutput(std::string plugin) : _plugin(std::move(plugin)) {}

void LazyAudioOutput::play(std::shared_ptr<AudioSource> source) {
    if (!std::exchange(_isLoaded, true))
        _output = load(_plugin);
    if (_output != nullptr)
        _output->play(std::move(source));
}

} // namespace selvane
