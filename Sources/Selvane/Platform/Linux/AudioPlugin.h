#pragma once

#include "Selvane/Platform/AudioOutput.h"

#include <QtCore/QtPlugin>

#include <memory>

namespace selvane {

/// Makes the output of this machine. Implemented by the plugin that holds the client of the sound server, so
/// that the program at rest doesn't carry it.
class AudioOutputFactory {
public:
    virtual ~AudioOutputFactory() = default;

    /// Never null.
    [[nodiscard]] virtual std::unique_ptr<AudioOutput> makeAudioOutput() = 0;
};

} // namespace selvane

Q_DECLARE_INTERFACE(selvane::AudioOutputFactory, "com.lorbin.selvane.AudioOutputFactory/1")
