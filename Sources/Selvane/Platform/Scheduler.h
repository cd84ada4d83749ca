#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Subscription.h"

#include <functional>

namespace selvane {

/// Runs work later on the main thread. All of the program's waiting goes through it, on a continuous clock
/// that goes on counting while the machine is suspended: what fell due during a suspend runs right after it.
///
/// Main thread only. Work never runs inside the call that schedules it. Work that is due at the same time
/// runs in the order in which it was scheduled. Ending the handle cancels, also from inside the work itself.
class Scheduler {
public:
    using Work = std::function<void()>;

    virtual ~Scheduler() = default;

    /// Runs `work` once at the next turn of the main loop. Can't be cancelled: guard what may be gone by
    /// then.
    virtual void post(Work work) = 0;

    /// Runs `work` once when `delay` has passed; a delay of zero or less means the next turn of the loop.
    virtual Subscription after(Seconds delay, Work work) = 0;

    /// Runs `work` at every multiple of `interval` (above zero) from now, each up to `tolerance` late so that
    /// wake-ups can be shared. Turns that were missed during a suspend or a busy time run once, not many
    /// times.
    virtual Subscription every(Seconds interval, Seconds tolerance, Work work) = 0;

    /// The continuous clock: seconds since some fixed moment. Not related to the wall clock.
    [[nodiscard]] virtual Seconds now() const = 0;
};

} // namespace selvane
