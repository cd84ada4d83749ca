#include "SelvaneCore/TimerEngine.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace selvane {

namespace {

constexpr Seconds shortestDuration{1.0};

/// Also for a length that is not a number.
Seconds atLeastShortest(Seconds length) {
    return length > shortestDuration ? length : shortestDuration;
}

Seconds timeLeft(Date now, Date end) {
    return std::max(elapsed(now, end), Seconds{0.0});
}

int sessionsPerSet(const TimerConfig& config) {
    return std::max(config.sessionsBeforeLongBreak, 1);
}

bool startsByItself(const TimerConfig& config, Phase phase) {
    return isBreak(phase) ? config.autoStartBreaks : config.autoStartFocus;
}

} // namespace

TimerEngine::TimerEngine(std::function<TimerConfig()> configProvider, std::function<Date()> clock)
    : _configProvider(std::move(configProvider)),
      _clock(std::move(clock)),
      _state{Phase::focus, Idle{}, 0, _clock(), std::nullopt} {}

void TimerEngine::start() {
    if (!isIdle())
        return;
    perform([this] {
        _state.now = _clock();
        Seconds length = config().duration(_state.phase);
        if (adjustDuration)
            length = adjustDuration(_state.phase, length);
        // Checked after the adjustment, which may give anything.
        length = atLeastShortest(length);
        // Fixed now, so that a change of the settings doesn't bend a phase that runs.
        _state.plannedDuration = length;
        // Not touched by a later resume: the record begins where the phase did.
        _phaseStart = _state.now;
        const Date end = adding(length, _state.now);
        _state.status = Running{end};
        emit(TimerEvents::Started{_state.phase, end});
    });
}

void TimerEngine::pause() {
    const auto* const running = std::get_if<Running>(&_state.status);
    if (!running)
        return;
    perform([this, end = running->end] {
        _state.now = _clock();
        _state.status = Paused{timeLeft(_state.now, end)};
        emit(TimerEvents::Paused{_state.phase});
    });
}

void TimerEngine::resume() {
    const auto* const paused = std::get_if<Paused>(&_state.status);
    if (!paused)
        return;
    perform([this, remaining = paused->remaining] {
        _state.now = _clock();
        const Date end = adding(remaining, _state.now);
        _state.status = Running{end};
        emit(TimerEvents::Started{_state.phase, end});
    });
}

void TimerEngine::toggle() {
    if (isRunning())
        pause();
    else if (isPaused())
        resume();
    else
        start();
}

void TimerEngine::reset() {
    if (isIdle())
        return;
    perform([this] {
        _state.now = _clock();
        std::optional<FocusSession> session = partialSession();
        clearActiveRun();
        emit(TimerEvents::Interrupted{std::move(session)});
    });
}

void TimerEngine::skip() {
    perform([this] {
        // Only a skip of a running phase lets the next one start by itself. Asked first, since ending the run
        // forgets it.
        const AutoStart autoStart = isRunning() ? AutoStart::allowed : AutoStart::forbidden;
        if (!isIdle()) {
            _state.now = _clock();
            std::optional<FocusSession> session = partialSession();
            clearActiveRun();
            emit(TimerEvents::Interrupted{std::move(session)});
        }
        advance(Counting::no, autoStart);
    });
}

void TimerEngine::select(Phase phase) {
    if (!isIdle() || phase == _state.phase)
        return;
    perform([this, phase] {
        _state.phase = phase;
        emit(TimerEvents::PhaseChanged{phase});
    });
}

void TimerEngine::tick() {
    const auto* const running = std::get_if<Running>(&_state.status);
    if (!running)
        return;
    perform([this, end = running->end] {
        _state.now = _clock();
        if (_state.now >= end)
            complete(end);
    });
}

Seconds TimerEngine::currentDuration() const {
    return _state.plannedDuration ? *_state.plannedDuration : config().duration(_state.phase);
}

Seconds TimerEngine::remaining() const {
    if (const auto* const running = std::get_if<Running>(&_state.status))
        return timeLeft(_state.now, running->end);
    if (const auto* const paused = std::get_if<Paused>(&_state.status))
        return paused->remaining;
    return config().duration(_state.phase);
}

double TimerEngine::progress() const {
    const Seconds duration = currentDuration();
    if (!(duration > Seconds{0.0}))
        return 0.0;
    return std::clamp(1.0 - remaining() / duration, 0.0, 1.0);
}

int TimerEngine::cyclePosition() const {
    return _state.completedFocusSessions % sessionsPerSet(config()) + 1;
}

/// Runs the steps of a command, and tells the observers once at the end of the outermost one.
template <typename Steps>
void TimerEngine::perform(Steps steps) {
    if (_depth > 0) {
        steps();
        return;
    }
    const State before = _state;
    ++_depth;
    steps();
    --_depth;
    if (_state != before)
        changed.emit();
}

void TimerEngine::emit(const TimerEvent& event) const {
    // A copy, so that a listener may replace itself.
    if (const auto listener = onEvent)
        listener(event);
}

void TimerEngine::complete(Date end) {
    const Seconds duration = currentDuration();
    const Date start = _phaseStart ? *_phaseStart : adding(-duration, end);
    // The record says what was planned, so that a phase slept through counts as run.
    FocusSession session{.id = UUID::random(),
                         .start = start,
                         .end = end,
                         .phase = _state.phase,
                         .plannedSeconds = duration,
                         .actualSeconds = duration,
                         .completed = true,
                         .taskID = std::nullopt,
                         .apps = std::nullopt};
    // Idle before the listener is told, so that it may start or select.
    clearActiveRun();
    emit(TimerEvents::Finished{std::move(session)});
    advance(Counting::yes, AutoStart::allowed);
}

void TimerEngine::advance(Counting counting, AutoStart autoStart) {
    // One reading for all that follows: the listener below may change the settings.
    const TimerConfig reading = config();
    Phase next = Phase::focus;
    if (_state.phase == Phase::focus) {
        // A count that can't be right would only do more harm. No user gets there, so the program is broken.
        if (_state.completedFocusSessions == std::numeric_limits<int>::max())
            std::abort();
        const int count = _state.completedFocusSessions + 1;
        if (counting == Counting::yes)
            _state.completedFocusSessions = count;
        next = count % sessionsPerSet(reading) == 0 ? Phase::longBreak : Phase::shortBreak;
    }
    _state.phase = next;
    emit(TimerEvents::PhaseChanged{next});
    if (autoStart == AutoStart::allowed && startsByItself(reading, next))
        start();
}

std::optional<FocusSession> TimerEngine::partialSession() const {
    const Seconds duration = currentDuration();
    const Seconds run = duration - remaining();
    if (run < Seconds{1.0} || !_phaseStart)
        return std::nullopt;
    return FocusSession{.id = UUID::random(),
                        .start = *_phaseStart,
                        .end = _state.now,
                        .phase = _state.phase,
                        .plannedSeconds = duration,
                        .actualSeconds = run,
                        .completed = false,
                        .taskID = std::nullopt,
                        .apps = std::nullopt};
}

void TimerEngine::clearActiveRun() {
    _state.status = Idle{};
    _state.plannedDuration = std::nullopt;
    _phaseStart = std::nullopt;
}

} // namespace selvane
