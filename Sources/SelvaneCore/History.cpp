#include "SelvaneCore/History.h"

#include <utility>

namespace selvane {

History::History(std::vector<FocusSession> sessions) : _sessions(std::move(sessions)) {}

// An optional that was moved from still holds something, unlike a vector.

History::History(History&& other) noexcept
    : _sessions(std::exchange(other._sessions, {})),
      _minutesByDay(std::exchange(other._minutesByDay, {})),
      _summary(std::exchange(other._summary, {})),
      _appTotals(std::exchange(other._appTotals, {})),
      _streak(std::exchange(other._streak, std::nullopt)) {}

History& History::operator=(History&& other) noexcept {
    History taken(std::move(other));
    std::swap(_sessions, taken._sessions);
    std::swap(_minutesByDay, taken._minutesByDay);
    std::swap(_summary, taken._summary);
    std::swap(_appTotals, taken._appTotals);
    std::swap(_streak, taken._streak);
    return *this;
}

void History::append(FocusSession session) {
    _sessions.push_back(std::move(session));
}

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
