#pragma once

#include "Selvane/Platform/NotificationCenter.h"
#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Subscription.h"

#include <algorithm>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace selvane {

/// What a notification center is to show later, for centers whose desktop knows no schedule. Keeps the rules
/// that `NotificationCenter` has for what is pending, on the scheduler's clock. Main thread.
class PendingRequests final {
public:
    struct Pending {
        NotificationRequest request;
        /// By the scheduler's clock.
        Seconds due;
        Subscription timer;
    };

    /// `show` is called with each request whose moment has come. The scheduler outlives this.
    PendingRequests(Scheduler& scheduler, std::function<void(NotificationRequest)> show)
        : _scheduler(scheduler), _show(std::move(show)) {}

    PendingRequests(const PendingRequests&) = delete;
    PendingRequests& operator=(const PendingRequests&) = delete;

    void add(NotificationRequest request, Seconds delay) {
        const std::string id = request.id;
        remove(id);
        auto timer = _scheduler.after(delay, [this, id] { deliver(id); });
        _pending.insert_or_assign(
            id,
            Pending{std::move(request), _scheduler.now() + std::max(delay, Seconds{0}), std::move(timer)});
    }

    void remove(std::span<const std::string_view> ids) {
        for (const auto id : ids)
            remove(id);
    }

    void deliver(std::string_view id) {
        const auto found = _pending.find(id);
        if (found == _pending.end())
            return;
        // Out of the map first, with the timer whose work this may be.
        auto node = _pending.extract(found);
        _show(std::move(node.mapped().request));
    }

    [[nodiscard]] const std::map<std::string, Pending, std::less<>>& all() const { return _pending; }

private:
    void remove(std::string_view id) {
        const auto found = _pending.find(id);
        if (found == _pending.end())
            return;
        if (found->second.due <= _scheduler.now())
            deliver(id);
        else
            _pending.erase(found);
    }

    Scheduler& _scheduler;
    std::function<void(NotificationRequest)> _show;
    std::map<std::string, Pending, std::less<>> _pending;
};

} // namespace selvane
