#pragma once

#include "Selvane/Platform/SerialQueue.h"

#include <deque>
#include <utility>

namespace selvane::test {

/// A queue that works only when a test says so.
class ManualQueue final : public SerialQueue {
public:
    void run(Work work) override { _waiting.push_back(std::move(work)); }

    /// Does the oldest work and what remains of it.
    void runNext() {
        const Work work = std::exchange(_waiting.front(), nullptr);
        _waiting.pop_front();
        if (const Rest rest = work())
            rest();
    }

    [[nodiscard]] std::size_t waiting() const { return _waiting.size(); }

private:
    std::deque<Work> _waiting;
};

} // namespace selvane::test
