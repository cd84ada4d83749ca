#include "Selvane/UI/Popover/ControlsModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/Commands.h"
#include "Selvane/UI/QtText.h"

#include <utility>

namespace selvane {

ControlsModel::ControlsModel(AppModel& model, QObject* parent) : QObject(parent), _model(model) {
    _timer = model.engine().changed.subscribe([this] { refresh(); });
    refresh();
}

void ControlsModel::refresh() {
    const TimerEngine& engine = _model.engine();
    const bool canReset = Commands::canReset(engine);
    const QString primaryLabel = qtText(Commands::primaryLabel(engine));
    const QString skipTooltip = qtText(Commands::skipTooltip(engine));
    if (canReset == _canReset && primaryLabel == _primaryLabel && skipTooltip == _skipTooltip)
        return;
    _canReset = canReset;
    _primaryLabel = primaryLabel;
    _skipTooltip = skipTooltip;
    Q_EMIT changed();
}

QString ControlsModel::resetLabel() const {
    return qtText(Commands::resetLabel);
}

QString ControlsModel::resetTooltip() const {
    return qtText(Commands::resetTooltip);
}

QString ControlsModel::skipLabel() const {
    return qtText(Commands::skipLabel);
}

void ControlsModel::reset() {
    Q_EMIT aboutToCommand();
    Commands::resetFromPopover(_model);
}

void ControlsModel::toggle() {
    Q_EMIT aboutToCommand();
    _model.engine().toggle();
}

void ControlsModel::skip() {
    Q_EMIT aboutToCommand();
    _model.engine().skip();
}

} // namespace selvane
