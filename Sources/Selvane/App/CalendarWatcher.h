#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Signal.h"

#include <optional>
#include <string>

namespace selvane {

/// An event of the user's calendar that takes time.
struct CalendarEvent {
    std::string title;
    Date start;
    friend bool operator==(const CalendarEvent&, const CalendarEvent&) = default;
};

/// Knows the next event that matters. Main thread.
class CalendarWatcher {
public:
    virtual ~CalendarWatcher() = default;

    /// Brings `nextEvent` up to date.
    virtual void refresh() = 0;
    [[nodiscard]] virtual std::optional<CalendarEvent> nextEvent() const = 0;

    /// Emitted when `nextEvent` has changed.
    Signal<> changed;
};

} // namespace selvane
