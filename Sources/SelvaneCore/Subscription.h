#pragma once

#include <functional>
#include <utility>

namespace selvane {

/// Stands for something that goes on as long as the handle lives: a listener, a timer, an assertion. Ends it
/// at most once, at `end()` or at destruction. An empty handle stands for nothing. Bound to the thread of its
/// maker.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end) : _end(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : _end(std::exchange(other._end, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            end();
            _end = std::exchange(other._end, nullptr);
        }
        return *this;
    }
    ~Subscription() { end(); }

    void end() {
        if (auto end = std::exchange(_end, nullptr))
            end();
    }

    /// True until `end()` was called or the handle was moved from.
    explicit operator bool() const { return static_cast<bool>(_end); }

private:
    std::function<void()> _end;
};

} // namespace selvane
