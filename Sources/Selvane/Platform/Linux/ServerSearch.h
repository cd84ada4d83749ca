#pragma once

#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Subscription.h"

#include <functional>
#include <memory>

namespace selvane {

/// Says when to look again for a sound server that isn't there: a second later, then ever more seldom, and
/// soon after a server has put its socket where programs look for it. Main thread.
class ServerSearch {
public:
    static constexpr Seconds shortestWait{1};
    /// A server that has just put its socket there doesn't listen yet, nor has it found its devices.
    static constexpr Seconds waitForNewServer{0.25};
    static constexpr Seconds longestWait{30};

    /// `look` is called from the main loop. The scheduler outlives the search.
    ServerSearch(Scheduler& scheduler, std::function<void()> look);
    ServerSearch(const ServerSearch&) = delete;
    ServerSearch& operator=(const ServerSearch&) = delete;
    ~ServerSearch();

    /// Looks after a while, unless that is on its way already. To be called again after each look in vain.
    void wait();
    /// Looks no more. The next wait goes on growing from here.
    void end();
    /// The next wait is the shortest again.
    void beginAnew() { _delay = shortestWait; }

private:
    class SocketWatch;

    void lookNow();
    void socketAppeared();

    Scheduler& _scheduler;
    std::function<void()> _look;
    Seconds _delay = shortestWait;
    Subscription _next;
    /// From the first wait to the end.
    std::unique_ptr<SocketWatch> _watch;
};

} // namespace selvane
