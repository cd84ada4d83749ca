#include "SelvaneCore/SessionFit.h"

#include <cmath>

namespace selvane {

namespace {

constexpr double secondsPerMinute = 60.0;

} // namespace

SessionFit SessionFit::evaluate(Date now, Seconds duration, std::optional<Date> nextEventStart,
                                Seconds buffer) {
    // 1. An event under way does not limit a session.
    if (!nextEventStart || *nextEventStart <= now)
        return fits();
    // 2. The time until the buffer begins.
    Seconds available = elapsed(now, *nextEventStart);
    if (buffer > Seconds{0.0})
        available -= buffer;
    // 3. Before the test for too little room, so that a short session may fit into it.
    if (duration <= available)
        return fits();
    // 4. Not worth shortening to.
    if (available < minimumSession)
        return noRoom();
    // 5. Whole minutes.
    return shorten(Seconds{std::floor(available.count() / secondsPerMinute) * secondsPerMinute});
}

} // namespace selvane
