#pragma once

#include "Selvane/Platform/PressMonitor.h"
#include "SelvaneCore/Signal.h"

namespace selvane::test {

/// A screen on which a test presses the button outside every window of the program.
class FakePressMonitor final : public PressMonitor {
public:
    Subscription watch(std::function<void()> onPress) override {
        ++_watchers;
        auto listener = std::make_shared<Subscription>(_presses.subscribe(std::move(onPress)));
        return Subscription([this, listener] {
            --_watchers;
            listener->end();
        });
    }

    void press() { _presses.emit(); }
    [[nodiscard]] int watchers() const { return _watchers; }

private:
    Signal<> _presses;
    int _watchers = 0;
};

} // namespace selvane::test
