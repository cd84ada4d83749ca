#pragma once

#include "Selvane/Platform/ActivationMonitor.h"
#include "SelvaneCore/Signal.h"

#include <memory>
#include <utility>

namespace selvane::test {

/// A desktop on which a test turns to another application.
class FakeActivationMonitor final : public ActivationMonitor {
public:
    Subscription watch(std::function<void()> onOtherApplication) override {
        ++_watchers;
        ++_watches;
        auto held = std::make_shared<Subscription>(_activations.subscribe(std::move(onOtherApplication)));
        return Subscription([this, held] {
            --_watchers;
            held->end();
        });
    }

    void activateOtherApplication() { _activations.emit(); }
    [[nodiscard]] int watchers() const { return _watchers; }
    /// How often it was asked to watch.
    [[nodiscard]] int watches() const { return _watches; }

private:
    Signal<> _activations;
    int _watchers = 0;
    int _watches = 0;
};

} // namespace selvane::test
