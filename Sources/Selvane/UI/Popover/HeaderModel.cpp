#include "Selvane/UI/Popover/HeaderModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/UI/Commands.h"
#include "Selvane/UI/QtText.h"
#include "Selvane/UI/WindowCoordinator.h"

namespace selvane {

HeaderModel::HeaderModel(AppModel& model, Scheduler& scheduler, WindowCoordinator* windows, QObject* parent)
    : QObject(parent), _model(model), _scheduler(scheduler), _windows(windows), _day(model.today()) {
    for (Signal<>* const signal : {&model.sessionsChanged, &model.settings().changed})
        _subscriptions.push_back(signal->subscribe([this] { refresh(); }));
    // A day that begins while the timer runs is noticed by its tick.
    _subscriptions.push_back(model.engine().changed.subscribe([this] { noticeDay(); }));
    _subscriptions.push_back(model.updater().changed.subscribe([this] { Q_EMIT updaterChanged(); }));
    refresh();
}

void HeaderModel::willShow() {
    _isShown = true;
    refresh();
}

void HeaderModel::didHide() {
    _isShown = false;
    _nextDay.end();
}

void HeaderModel::noticeDay() {
    if (_isShown && _day != _model.today())
        refresh();
}

void HeaderModel::refresh() {
    _day = _model.today();
    if (_isShown)
        _nextDay = _scheduler.after(_model.untilNextDay(), [this] { refresh(); });
    const StreakResult result = _model.streak();
    if (result.current == _streak && result.todayMet == _isTodayMet)
        return;
    _streak = result.current;
    _isTodayMet = result.todayMet;
    Q_EMIT streakChanged();
}

QString HeaderModel::streak() const {
    return QString::number(_streak);
}

QString HeaderModel::streakTooltip() const {
    return QStringLiteral("%1-day streak. ").arg(_streak) +
           (_isTodayMet ? QStringLiteral("Today's goal is done.")
                        : QStringLiteral("Hit today's goal to keep it going."));
}

QString HeaderModel::moreLabel() const {
    return QStringLiteral("More");
}

bool HeaderModel::isUpdateAvailable() const {
    return _model.updater().updateAvailable();
}

QString HeaderModel::statisticsLabel() const {
    return qtText(Commands::statisticsLabel);
}

QString HeaderModel::statisticsShortcut() const {
    return qtText(Commands::statisticsShortcut);
}

QString HeaderModel::settingsLabel() const {
    return qtText(Commands::settingsLabel);
}

QString HeaderModel::settingsShortcut() const {
    return qtText(Commands::settingsShortcut);
}

QString HeaderModel::whatsNewLabel() const {
    return qtText(Commands::whatsNewLabel);
}

QString HeaderModel::updateLabel() const {
    return qtText(Commands::updateLabel(_model.updater()));
}

bool HeaderModel::canCheckForUpdates() const {
    return _model.updater().canCheckForUpdates();
}

QString HeaderModel::quitLabel() const {
    return qtText(Commands::quitLabel);
}

QString HeaderModel::quitShortcut() const {
    return qtText(Commands::quitShortcut);
}

void HeaderModel::openStatistics() {
    Commands::openPane(_model, _windows, Pane::statistics);
}

void HeaderModel::openSettings() {
    if (_windows)
        _windows->showSettings();
}

void HeaderModel::openWhatsNew() {
    Commands::openPane(_model, _windows, Pane::whatsNew);
}

void HeaderModel::checkForUpdates() {
    _model.updater().checkForUpdates();
}

void HeaderModel::quit() {
    Q_EMIT quitRequested();
}

} // namespace selvane
