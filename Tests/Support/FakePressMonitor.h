#pragma once

#include "Selvane/Platform/PressMonitor.h"
#include "SelvaneCore/Signal.h"

#include <memory>
#include <utility>

namespace selvane::test {

/// A screen on which a test presses the button outside every window of the program.
class FakePressMonitor final : public PressMonitor {
public:
    Subscription watch(Listener listener) override {
        ++_watchers;
        auto held = std::make_shared<std::pair<Subscription, Subscription>>(
            _presses.subscribe(std::move(listener.onPress)),
            _releases.subscribe(std::move(listener.onRelease)));
        return Subscription([this, held] {
            --_watchers;
            held->first.end();
            held->second.end();
        });
    }

    void press() { _presses.emit(); }
    void release() { _releases.emit(); }
    [[nodiscard]] int watchers() const { return _watchers; }

private:
    Signal<> _presses;
    Signal<> _releases;
    int _watchers = 0;
};

} // namespace selvane::test
