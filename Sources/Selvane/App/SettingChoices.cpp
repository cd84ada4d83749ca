#include "Selvane/App/SettingChoices.h"

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

} // namespace selvane
