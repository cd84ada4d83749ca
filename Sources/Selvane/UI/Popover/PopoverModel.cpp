#include "Selvane/UI/Popover/PopoverModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/Appearance.h"
#include "Selvane/UI/Commands.h"
#include "Selvane/UI/Popover/PopoverText.h"
#include "Selvane/UI/QtText.h"
#include "SelvaneCore/TimeFormat.h"

#include <QLocale>

#include <utility>

namespace selvane {

PopoverModel::PopoverModel(AppModel& model, Appearance& appearance, QObject* parent)
    : QObject(parent), _model(model), _appearance(appearance), _look(model.settings(), appearance) {
    const auto follow = [this](auto& signal, auto notify) {
        _subscriptions.push_back(signal.subscribe([this, notify] { notify(*this); }));
    };
    follow(model.engine().changed, [](PopoverModel& self) { Q_EMIT self.timerChanged(); });
    follow(model.sessionsChanged, [](PopoverModel& self) { self.refresh(); });
    follow(model.settings().changed, [](PopoverModel& self) {
        Q_EMIT self.timerChanged();
        self.refresh();
    });
    follow(model.saveErrorChanged, [](PopoverModel& self) { Q_EMIT self.footerChanged(); });
    refresh();
}

void PopoverModel::refresh() {
    const QString text = PopoverText::today(_model.todayMinutes(), _model.settings().dailyGoalMinutes());
    if (std::exchange(_today, text) != text)
        Q_EMIT footerChanged();
}

void PopoverModel::prepareToShow() {
    refresh();
    Q_EMIT timerChanged();
    Q_EMIT appearanceChanged();
    Q_EMIT aboutToShow();
}

QString PopoverModel::phaseTitle() const {
    return qtText(title(_model.engine().phase()));
}

QString PopoverModel::sessionStatus() const {
    return PopoverText::sessionStatus(_model.engine(), _model.localCalendar(), QLocale());
}

QString PopoverModel::time() const {
    return QString::fromStdString(TimeFormat::clock(_model.engine().remaining()));
}

QString PopoverModel::timeDescription() const {
    return time() + QStringLiteral(" remaining");
}

bool PopoverModel::isPaused() const {
    return _model.engine().isPaused();
}

QString PopoverModel::primaryLabel() const {
    return qtText(Commands::primaryLabel(_model.engine()));
}

QString PopoverModel::resetLabel() const {
    return qtText(Commands::resetLabel);
}

QString PopoverModel::resetTooltip() const {
    return qtText(Commands::resetTooltip);
}

bool PopoverModel::canReset() const {
    return Commands::canReset(_model.engine());
}

QString PopoverModel::skipLabel() const {
    return qtText(Commands::skipLabel);
}

QString PopoverModel::skipTooltip() const {
    return qtText(Commands::skipTooltip(_model.engine()));
}

QString PopoverModel::quitLabel() const {
    return qtText(Commands::quitLabel);
}

QString PopoverModel::quitTooltip() const {
    return qtText(Commands::quitTooltip);
}

QString PopoverModel::quitDescription() const {
    return qtText(Commands::quitDescription);
}

QString PopoverModel::name() const {
    return QStringLiteral("Selvane");
}

QString PopoverModel::footer() const {
    return hasProblem() ? QString::fromStdString(*_model.saveError()) : _today;
}

bool PopoverModel::hasProblem() const {
    return _model.saveError().has_value();
}

bool PopoverModel::isComposited() const {
    return _appearance.isComposited();
}

void PopoverModel::toggle() {
    _model.engine().toggle();
}

void PopoverModel::reset() {
    Commands::resetFromPopover(_model);
}

void PopoverModel::skip() {
    _model.engine().skip();
}

void PopoverModel::cancel() {
    Q_EMIT cancelled();
}

void PopoverModel::quit() {
    Q_EMIT quitRequested();
}

} // namespace selvane
