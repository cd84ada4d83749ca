#include "Selvane/UI/Timer/TimerFaceModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/App/AppSettings.h"
#include "Selvane/UI/QtText.h"
#include "Selvane/UI/Timer/TimerFaceState.h"
#include "SelvaneCore/TimeFormat.h"

#include <utility>

namespace selvane {

TimerFaceModel::TimerFaceModel(AppSettings& settings, std::function<TimerFaceState()> source, QObject* parent)
    : QObject(parent),
      _settings(settings),
      _source(std::move(source)),
      _state(std::make_unique<TimerFaceState>(_source())) {
    _subscriptions.push_back(settings.changed.subscribe([this] { refresh(); }));
}

TimerFaceModel::TimerFaceModel(AppModel& model, QObject* parent)
    : TimerFaceModel(
          model.settings(), [&model] { return TimerFaceRules::stateOf(model.engine(), model.settings()); },
          parent) {
    _model = &model;
    _subscriptions.push_back(model.engine().changed.subscribe([this] { refresh(); }));
    refresh();
}

TimerFaceModel::TimerFaceModel(AppSettings& settings, QObject* parent)
    : TimerFaceModel(
          settings, [&settings] { return TimerFaceRules::sample(settings.timerStyle()); }, parent) {
    refresh();
}

TimerFaceModel::~TimerFaceModel() = default;

void TimerFaceModel::refresh() {
    const TimerFaceState before = std::exchange(*_state, _source());
    const QString timeBefore =
        std::exchange(_time, QString::fromStdString(TimeFormat::clock(_state->remaining)));
    const QString glyphBefore =
        std::exchange(_glyph, qtText(TimerFaceRules::glyph(_settings, _state->phase, _state->isPaused)));
    const QString symbolBefore =
        std::exchange(_symbol, qtText(TimerFaceRules::glyph(_settings, _state->phase, false)));

    // A tick changes the time and the progress and nothing else, so views that show the rest don't hear of
    // it.
    TimerFaceState same = *_state;
    same.style = before.style;
    same.remaining = before.remaining;
    same.progress = before.progress;
    const bool captionFades = _state->isPaused != before.isPaused;
    if (same != before && std::exchange(_captionFades, captionFades) != captionFades)
        Q_EMIT captionFadesChanged();
    if (same != before)
        Q_EMIT stateChanged();
    if (_state->style != before.style)
        Q_EMIT styleChanged();
    if (_state->progress != before.progress)
        Q_EMIT progressChanged();
    if (_time != timeBefore)
        Q_EMIT timeChanged();
    if (_glyph != glyphBefore || _symbol != symbolBefore)
        Q_EMIT glyphChanged();
}

TimerFaceModel::Style TimerFaceModel::style() const {
    switch (_state->style) {
    case TimerStyle::ring:
        return Ring;
    case TimerStyle::bar:
        return Bar;
    case TimerStyle::minimal:
        return Minimal;
    }
    __builtin_unreachable();
}

double TimerFaceModel::frameHeight() const {
    return TimerFaceRules::frameHeight(_state->style);
}

TimerFaceModel::Phase TimerFaceModel::phase() const {
    switch (_state->phase) {
    case selvane::Phase::focus:
        return Focus;
    case selvane::Phase::shortBreak:
        return ShortBreak;
    case selvane::Phase::longBreak:
        return LongBreak;
    }
    __builtin_unreachable();
}

bool TimerFaceModel::isRunning() const {
    return _state->isRunning;
}

bool TimerFaceModel::isPaused() const {
    return _state->isPaused;
}

double TimerFaceModel::progress() const {
    return _state->progress;
}

double TimerFaceModel::strength() const {
    return TimerFaceRules::opacity(_state->phase, _state->isPaused);
}

QString TimerFaceModel::timeLabel() const {
    return TimerFaceRules::timeLabel(_state->remaining);
}

QString TimerFaceModel::caption() const {
    return TimerFaceRules::caption(_state->phase, _state->isPaused);
}

int TimerFaceModel::cyclePosition() const {
    return _state->cyclePosition;
}

int TimerFaceModel::cycleLength() const {
    return _state->cycleLength;
}

bool TimerFaceModel::canEdit() const {
    return _model && !_state->isRunning && !_state->isPaused;
}

QString TimerFaceModel::editTooltip() const {
    return QStringLiteral("Click to type the minutes");
}

QString TimerFaceModel::editHint() const {
    return QStringLiteral("Type a new length in minutes");
}

QString TimerFaceModel::glyph() const {
    return _glyph;
}

QString TimerFaceModel::symbol() const {
    return _symbol;
}

QString TimerFaceModel::iconLabel() const {
    return TimerFaceRules::iconLabel(_state->phase);
}

QString TimerFaceModel::iconTitle() const {
    return TimerFaceRules::iconTitle(_state->phase);
}

QString TimerFaceModel::iconTooltip() const {
    return QStringLiteral("Change this icon");
}

QString TimerFaceModel::iconHint() const {
    return QStringLiteral("Choose a different icon");
}

double TimerFaceModel::remaining() const {
    return _state->remaining.count();
}

void TimerFaceModel::setMinutes(int minutes) {
    // The timer may have been started from elsewhere while the user typed.
    if (canEdit())
        _settings.setMinutes(minutes, _state->phase);
}

void TimerFaceModel::chooseSymbol(const QString& name) {
    auto& setting = isBreak(_state->phase) ? _settings.breakSymbol : _settings.focusSymbol;
    setting.set(name.toStdString());
}

} // namespace selvane
