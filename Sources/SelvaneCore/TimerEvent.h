#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <optional>
#include <variant>

namespace selvane {

/// What the timer engine tells its one listener, one type per kind of event.
namespace TimerEvents {

/// A phase started, or resumed from a pause; it runs out at `end`.
struct Started {
    Phase phase;
    Date end;

    friend bool operator==(const Started&, const Started&) = default;
};

/// The running phase was paused.
struct Paused {
    Phase phase;

    friend bool operator==(const Paused&, const Paused&) = default;
};

/// A phase ran out by itself.
struct Finished {
    FocusSession session;

    friend bool operator==(const Finished&, const Finished&) = default;
};

/// A running or paused phase was stopped by hand. No session if it had run for less than a second.
struct Interrupted {
    std::optional<FocusSession> session;

    friend bool operator==(const Interrupted&, const Interrupted&) = default;
};

/// Another phase is selected.
struct PhaseChanged {
    Phase phase;

    friend bool operator==(const PhaseChanged&, const PhaseChanged&) = default;
};

} // namespace TimerEvents

using TimerEvent = std::variant<TimerEvents::Started, TimerEvents::Paused, TimerEvents::Finished,
                                TimerEvents::Interrupted, TimerEvents::PhaseChanged>;

} // namespace selvane
