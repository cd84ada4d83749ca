#pragma once

#include "SelvaneCore/Subscription.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace selvane {

/// Tells any number of listeners that something happened, in the order in which they subscribed.
///
/// Single thread. Re-entrant: a listener may emit, subscribe, end any subscription or destroy the signal.
/// A listener added during an emission is first called at the next one; a listener whose subscription has
/// ended is not called again, also within the emission under way.
template <typename... Args>
class Signal {
public:
    using Listener = std::function<void(Args...)>;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    Subscription subscribe(Listener listener) {
        auto slot = std::make_shared<Slot>(Slot{std::move(listener), true});
        _slots->push_back(slot);
        return Subscription([slots = std::weak_ptr<Slots>(_slots), slot] {
            slot->active = false;
            if (const auto alive = slots.lock())
                std::erase(*alive, slot);
        });
    }

    void emit(Args... args) const {
        const Slots now = *_slots;
        for (const auto& slot : now) {
            if (slot->active)
                slot->listener(args...);
        }
    }

private:
    struct Slot {
        Listener listener;
        bool active;
    };
    using Slots = std::vector<std::shared_ptr<Slot>>;

    std::shared_ptr<Slots> _slots = std::make_shared<Slots>();
};

} // namespace selvane
