#pragma once

namespace selvane {

/// A short, silent signal that something was achieved. Main thread; does nothing where there is no means for
/// it.
class AttentionSignal {
public:
    virtual ~AttentionSignal() = default;

    virtual void perform() = 0;
};

} // namespace selvane
