#include "Selvane/UI/Popover/PopoverModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/Appearance.h"
#include "Selvane/UI/Commands.h"
#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/PopoverText.h"
#include "Selvane/UI/QtText.h"

#include <QLocale>

#include <utility>

namespace selvane {

PopoverModel::PopoverModel(AppModel& model, Appearance& appearance, Scheduler& scheduler,
                           WindowCoordinator* windows, QObject* parent)
    : QObject(parent),
      _model(model),
      _appearance(appearance),
      _look(model.settings(), appearance),
      _header(model, scheduler, windows),
      _phaseMenu(model),
      _face(model),
      _taskPicker(model),
      _note(model, scheduler, windows),
      _controls(model),
      _music(model),
      _tasks(model),
      _progress(model, scheduler) {
    for (Signal<>* const signal : {&model.engine().changed, &model.settings().changed})
        _subscriptions.push_back(signal->subscribe([this] { refreshSessionStatus(); }));
    connect(&_header, &HeaderModel::quitRequested, this, &PopoverModel::quitRequested);
    // A click leaves the keyboard where it is, so the minutes would be lost with the field that they are
    // typed into.
    connect(&_controls, &ControlsModel::aboutToCommand, &_face, &TimerFaceModel::endTyping);
    refreshSessionStatus();
}

void PopoverModel::refreshSessionStatus() {
    const QString status = PopoverText::sessionStatus(_model.engine(), _model.localCalendar(), QLocale());
    if (std::exchange(_sessionStatus, status) != status)
        Q_EMIT sessionStatusChanged();
}

void PopoverModel::setWhole(bool isWhole) {
    if (std::exchange(_isWhole, isWhole) != isWhole)
        Q_EMIT isWholeChanged();
}

void PopoverModel::prepareToShow() {
    refreshSessionStatus();
    _header.willShow();
    _note.willShow();
    _progress.refresh();
    const int margin = _appearance.isComposited() ? PanelPlacement::shadowMargin : 0;
    if (std::exchange(_shadowMargin, margin) != margin)
        Q_EMIT shadowMarginChanged();
    Q_EMIT mainButtonWanted();
}

void PopoverModel::didHide() {
    _header.didHide();
    _note.didHide();
    Q_EMIT mainButtonWanted();
}

void PopoverModel::keyboardIsIdle() {
    Q_EMIT mainButtonWanted();
}

QString PopoverModel::name() const {
    return QStringLiteral("Selvane");
}

QString PopoverModel::tasksTitle() const {
    return QStringLiteral("Tasks");
}

QString PopoverModel::progressTitle() const {
    return QStringLiteral("Progress");
}

QString PopoverModel::tabTooltip() const {
    return QStringLiteral("Tasks %1 · Progress %2").arg(tasksShortcut(), progressShortcut());
}

QString PopoverModel::tasksShortcut() const {
    return qtText(Commands::tasksShortcut);
}

QString PopoverModel::progressShortcut() const {
    return qtText(Commands::progressShortcut);
}

void PopoverModel::cancel() {
    Q_EMIT cancelled();
}

void PopoverModel::turnAway() {
    Q_EMIT turnedAway();
}

} // namespace selvane
