#include "Selvane/App/AppSettings.h"

namespace selvane {

bool reactsToDrift(FocusGuardMode mode) {
    switch (mode) {
    case FocusGuardMode::off:
    case FocusGuardMode::track:
        return false;
    case FocusGuardMode::nudge:
    case FocusGuardMode::hide:
        return true;
    }
    __builtin_unreachable();
}

TimerConfig AppSettings::timerConfig() const {
    return {static_cast<double>(focusMinutes()),
            static_cast<double>(shortBreakMinutes()),
            static_cast<double>(longBreakMinutes()),
            sessionsBeforeLongBreak(),
            autoStartBreaks(),
            autoStartFocus()};
}

} // namespace selvane
