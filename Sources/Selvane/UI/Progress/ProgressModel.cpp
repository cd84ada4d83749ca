#include "Selvane/UI/Progress/ProgressModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/Progress/HeatmapDays.h"
#include "Selvane/UI/Progress/ProgressText.h"

#include <optional>
#include <utility>

namespace selvane {

/// What is shown, and what it was counted from.
struct ProgressModel::Figures {
    History::StreakQuestion question;
    StreakResult streak;
    int todayMinutes;
    std::optional<double> score;
    HeatmapData heatmap;
};

ProgressModel::ProgressModel(AppModel& model, Scheduler& scheduler, QObject* parent)
    : QObject(parent), _model(model), _scheduler(scheduler) {
    _subscriptions.push_back(model.sessionsChanged.subscribe([this] { historyChanged(); }));
    _subscriptions.push_back(model.settings().changed.subscribe([this] { refresh(); }));
    // A day that begins while the timer runs is noticed by its tick.
    _subscriptions.push_back(model.engine().changed.subscribe([this] { noticeDay(); }));
}

ProgressModel::~ProgressModel() = default;

void ProgressModel::setShown(bool shown) {
    if (std::exchange(_isShown, shown) == shown)
        return;
    Q_EMIT shownChanged();
    refresh();
}

void ProgressModel::historyChanged() {
    _isHistoryNew = true;
    refresh();
}

void ProgressModel::noticeDay() {
    if (_isShown && _figures && _figures->question.today != _model.today())
        refresh();
}

void ProgressModel::refresh() {
    _nextDay.end();
    if (!_isShown)
        return;
    const bool isNew = bringUpToDate();
    awaitNextDay();
    if (isNew)
        Q_EMIT changed();
}

void ProgressModel::awaitNextDay() {
    _nextDay = _scheduler.after(_model.untilNextDay(), [this] { refresh(); });
}

bool ProgressModel::bringUpToDate() const {
    const AppSettings& settings = _model.settings();
    const Calendar calendar = _model.localCalendar();
    const int dayStartHour = settings.dayStartHour();
    const History::StreakQuestion question{
        .goalMinutes = settings.dailyGoalMinutes(),
        .today = _model.today(),
        .freezesEnabled = settings.streakFreezesEnabled(),
        .dayStartHour = dayStartHour,
        .calendar = calendar,
    };
    const bool isCounted = !_isHistoryNew && _figures && _figures->question == question;
    // The list of distractions and whether they are followed count for the score alone.
    const std::optional<double> score = _model.todayFocusScore();
    if (isCounted && _figures->score == score)
        return false;
    if (isCounted) {
        _figures->score = score;
        return true;
    }

    StreakResult streak = _model.streak();
    HeatmapData heatmap({.minutesByDay = _model.history().focusMinutesByDay(dayStartHour, calendar),
                         .frozenDays = streak.frozenDays,
                         .goal = question.goalMinutes,
                         .today = question.today,
                         .calendar = calendar});
    _figures = std::make_unique<Figures>(
        Figures{question, std::move(streak), _model.todayMinutes(), score, std::move(heatmap)});
    _isHistoryNew = false;
    return true;
}

const ProgressModel::Figures& ProgressModel::figures() const {
    if (!_figures)
        bringUpToDate();
    return *_figures;
}

QString ProgressModel::streak() const {
    return QString::number(figures().streak.current);
}

QString ProgressModel::streakLabel() const {
    return QStringLiteral("day streak");
}

QString ProgressModel::streakDescription() const {
    return ProgressText::streak(figures().streak.current);
}

QString ProgressModel::milestone() const {
    return ProgressText::milestone(figures().streak.current);
}

int ProgressModel::todayMinutes() const {
    return figures().todayMinutes;
}

int ProgressModel::dailyGoalMinutes() const {
    return figures().question.goalMinutes;
}

QString ProgressModel::best() const {
    return ProgressText::best(figures().streak.longest);
}

QString ProgressModel::freezes() const {
    return ProgressText::freezes(figures().streak.freezesAvailable);
}

QString ProgressModel::freezesTooltip() const {
    return ProgressText::freezesTooltip();
}

QString ProgressModel::score() const {
    const std::optional<double>& score = figures().score;
    return score ? ProgressText::score(*score) : QString();
}

QString ProgressModel::scoreTooltip() const {
    return ProgressText::scoreTooltip();
}

HeatmapData ProgressModel::heatmap() const {
    return figures().heatmap;
}

} // namespace selvane
