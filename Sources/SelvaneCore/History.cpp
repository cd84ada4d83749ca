#include "SelvaneCore/History.h"

namespace selvane {

const MinutesByDay& History::focusMinutesByDay(int dayStartHour, const Calendar& calendar) const {
    return _minutesByDay.over(_sessions, {dayStartHour, calendar}).answer();
}

Stats::Summary History::summary(const Calendar& calendar) const {
    return _summary.over(_sessions, {calendar}).answer();
}

std::vector<AppUsage> History::appTotals(Date since) const {
    return _appTotals.over(_sessions, {since}).answer();
}

std::optional<double> History::averageFocusScore(const DistractingSet& distracting, Date since) const {
    return FocusScore::compute(appTotals(since), distracting);
}

StreakResult History::streak(const StreakQuestion& question) const {
    if (!_streak || _streak->sessions != _sessions.size() || !(_streak->question == question)) {
        const MinutesByDay& minutes = focusMinutesByDay(question.dayStartHour, question.calendar);
        _streak = KnownStreak{question, _sessions.size(),
                              StreakCalculator::compute(minutes, question.goalMinutes, question.today,
                                                        question.freezesEnabled, question.calendar)};
    }
    return _streak->result;
}

} // namespace selvane
