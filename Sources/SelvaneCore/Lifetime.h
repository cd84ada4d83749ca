#pragma once

#include <memory>
#include <utility>

namespace selvane {

/// Lets callbacks refer to their owner weakly: what `guard` wraps does nothing once this member is destroyed.
/// Declare it last, so that it ends first. Single thread.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// A callable with the arguments of `function`, which must return nothing.
    template <typename Function>
    [[nodiscard]] auto guard(Function function) const {
        return [alive = std::weak_ptr<const bool>(_alive),
                function = std::move(function)](auto&&... args) mutable {
            if (const auto keep = alive.lock())
                function(std::forward<decltype(args)>(args)...);
        };
    }

    /// For callbacks that must answer also when the owner is gone.
    [[nodiscard]] std::weak_ptr<const bool> token() const { return _alive; }

private:
    std::shared_ptr<const bool> _alive = std::make_shared<const bool>(true);
};

} // namespace selvane
