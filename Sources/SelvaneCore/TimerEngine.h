#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/Signal.h"
#include "SelvaneCore/TimerEvent.h"

#include <functional>
#include <optional>
#include <variant>

namespace selvane {

/// The state machine of the focus cycle.
///
/// Knows nothing of tasks, files or timers: somebody calls `tick` about once a second and listens to
/// `onEvent`. A running countdown is an end date and not a counter, so a late or missing tick costs no
/// accuracy, and a machine that slept past the end finishes the phase at its first tick.
///
/// Invariant: a planned duration and the date of the first start are known exactly while the status is not
/// idle.
///
/// Main thread only. Commands are synchronous; one that doesn't apply to the status does nothing. Events come
/// from inside the command, when the state that they tell of is in force. A listener may give further
/// commands: they take effect at once, and then the outer command goes on with its remaining steps from the
/// state that it finds. A listener must not destroy the engine.
class TimerEngine {
public:
    /// Nothing is under way; the phase is only selected.
    struct Idle {
        friend bool operator==(const Idle&, const Idle&) = default;
    };
    /// Counting down towards `end`.
    struct Running {
        Date end;
        friend bool operator==(const Running&, const Running&) = default;
    };
    /// Frozen with this much left, at least zero.
    struct Paused {
        Seconds remaining;
        friend bool operator==(const Paused&, const Paused&) = default;
    };
    using Status = std::variant<Idle, Running, Paused>;

    /// Both callbacks must be set. The configuration is asked for afresh at each use.
    TimerEngine(std::function<TimerConfig()> configProvider, std::function<Date()> clock);
    TimerEngine(const TimerEngine&) = delete;
    TimerEngine& operator=(const TimerEngine&) = delete;

    /// Starts the selected phase. Only from idle.
    void start();
    /// Freezes the countdown. Only while running.
    void pause();
    /// Goes on after a pause, which the listener hears as `Started`.
    void resume();
    /// Pauses, resumes or starts, whichever the status calls for.
    void toggle();
    /// Abandons the present run and keeps the phase and the count.
    void reset();
    /// Goes to the next phase without counting the present one. The next phase starts by itself only if this
    /// one was running and the configuration says so.
    void skip();
    /// Selects a phase. Only from idle.
    void select(Phase phase);
    /// Reads the clock, and ends the running phase if its end has come.
    void tick();

    [[nodiscard]] Phase phase() const { return _state.phase; }
    [[nodiscard]] const Status& status() const { return _state.status; }
    /// Focus phases that ran out by themselves since construction. Only grows.
    [[nodiscard]] int completedFocusSessions() const { return _state.completedFocusSessions; }
    /// When the clock was last read; what `remaining` refers to.
    [[nodiscard]] Date now() const { return _state.now; }
    [[nodiscard]] TimerConfig config() const { return _configProvider(); }

    [[nodiscard]] bool isIdle() const { return std::holds_alternative<Idle>(_state.status); }
    [[nodiscard]] bool isRunning() const { return std::holds_alternative<Running>(_state.status); }
    [[nodiscard]] bool isPaused() const { return std::holds_alternative<Paused>(_state.status); }

    /// The length that the present run was planned for; while idle, the configured length of the phase.
    [[nodiscard]] Seconds currentDuration() const;
    /// What is left of `currentDuration`, at least zero. More than that only if the clock was set back.
    [[nodiscard]] Seconds remaining() const;
    /// How much of `currentDuration` is over, from 0 to 1.
    [[nodiscard]] double progress() const;
    /// The ordinal, from 1, of the focus phase that is next or under way within its set.
    [[nodiscard]] int cyclePosition() const;

    /// The one listener of the timer's events. May be absent.
    std::function<void(const TimerEvent&)> onEvent;
    /// May replace the planned length of a phase; asked once at each start, not at a resume. May be absent.
    std::function<Seconds(Phase, Seconds)> adjustDuration;
    /// Emitted at the end of an outermost command that changed the phase, the status, the count, `now` or the
    /// planned duration.
    Signal<> changed;

private:
    struct State {
        Phase phase;
        Status status;
        int completedFocusSessions;
        Date now;
        std::optional<Seconds> plannedDuration;

        friend bool operator==(const State&, const State&) = default;
    };
    enum class Counting { no, yes };
    enum class AutoStart { forbidden, allowed };

    template <typename Steps>
    void perform(Steps steps);
    void emit(const TimerEvent& event) const;

    void complete(Date end);
    void advance(Counting counting, AutoStart autoStart);
    [[nodiscard]] std::optional<FocusSession> partialSession() const;
    void clearActiveRun();

    std::function<TimerConfig()> _configProvider;
    std::function<Date()> _clock;
    State _state;
    /// When the present run was first started.
    std::optional<Date> _phaseStart;
    /// How many commands are under way, one inside the other.
    int _depth = 0;
};

} // namespace selvane
