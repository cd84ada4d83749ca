#include "Selvane/Platform/Linux/AudioPlugin.h"
#include "Selvane/Platform/Linux/PulseAudioOutput.h"
#include "SelvaneCore/Log.h"

#include <QtCore/QObject>

namespace selvane {

class PulseAudioPlugin final : public QObject, public AudioOutputFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.lorbin.selvane.AudioOutputFactory/1")
    Q_INTERFACES(selvane::AudioOutputFactory)

public:
    // A plugin has a log of its own.
    PulseAudioPlugin() { Log::toJournal(); }

    [[nodiscard]] std::unique_ptr<AudioOutput> makeAudioOutput() override {
        return std::make_unique<PulseAudioOutput>();
    }
};

} // namespace selvane

#include "PulseAudioPlugin.moc"
