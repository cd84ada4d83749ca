#include "Selvane/UI/Timer/PresetChoices.h"

#include "SelvaneCore/DurationPreset.h"

namespace selvane {

PresetChoices::PresetChoices(QObject* parent) : QObject(parent) {
    for (const DurationPreset& preset : DurationPreset::all) {
        _titles.append(QString::fromStdString(preset.title()));
        _summaries.append(QString::fromStdString(preset.summary()));
    }
}

} // namespace selvane
