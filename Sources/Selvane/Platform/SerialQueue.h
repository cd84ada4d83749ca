#pragma once

#include <functional>

namespace selvane {

/// Does blocking work away from the main thread, one piece after another, in the order in which it came.
///
/// Called on the main thread only. At destruction work that has begun is waited for; what hasn't begun is
/// dropped, and nothing is handed back any more.
class SerialQueue {
public:
    /// What remains to be done with a result, on the main thread.
    using Rest = std::function<void()>;
    /// Runs elsewhere: takes everything that it needs along by value. Gives what remains to be done; it may
    /// be empty.
    using Work = std::function<Rest()>;

    virtual ~SerialQueue() = default;

    /// Runs `work` on the queue's own thread, then the rest at a turn of the main loop.
    virtual void run(Work work) = 0;
};

} // namespace selvane
