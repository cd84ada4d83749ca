#pragma once

namespace selvane {

/// Turns the desktop's Do Not Disturb on and off, and off again only if it turned it on. Main thread; returns
/// at once.
class FocusModeController {
public:
    virtual ~FocusModeController() = default;

    virtual void set(bool on) = 0;
};

} // namespace selvane
