#include "Selvane/UI/Popover/PhaseMenuModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/QtText.h"

#include <utility>

namespace selvane {

PhaseMenuModel::PhaseMenuModel(AppModel& model, QObject* parent) : QObject(parent), _model(model) {
    _timer = model.engine().changed.subscribe([this] { refresh(); });
    refresh();
}

void PhaseMenuModel::refresh() {
    const TimerEngine& engine = _model.engine();
    QString title = qtText(selvane::title(engine.phase()));
    if (title == _title && engine.isIdle() == _canSelect)
        return;
    _title = std::move(title);
    _canSelect = engine.isIdle();
    std::vector<MenuChoices::Choice> choices;
    for (const Phase phase : allPhases)
        choices.push_back({qtText(selvane::title(phase)), phase == engine.phase()});
    _phases.setChoices(std::move(choices));
    Q_EMIT changed();
}

QString PhaseMenuModel::title() const {
    return _title;
}

QString PhaseMenuModel::tooltip() const {
    return _canSelect ? QStringLiteral("Choose a phase") : QStringLiteral("Reset the timer to switch phases");
}

QString PhaseMenuModel::accessibleName() const {
    return pickerLabel() + QStringLiteral(": ") + _title;
}

QString PhaseMenuModel::pickerLabel() const {
    return QStringLiteral("Phase");
}

QStringList PhaseMenuModel::hints() const {
    return _canSelect ? QStringList() : QStringList{QStringLiteral("Reset the timer to switch")};
}

void PhaseMenuModel::select(int row) {
    if (row >= 0 && static_cast<std::size_t>(row) < allPhases.size())
        _model.engine().select(allPhases.at(static_cast<std::size_t>(row)));
}

} // namespace selvane
