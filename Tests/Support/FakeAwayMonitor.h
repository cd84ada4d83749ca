#pragma once

#include "Selvane/Platform/AwayMonitor.h"

namespace selvane::test {

/// A machine that wakes when a test says so.
class FakeAwayMonitor final : public AwayMonitor {
public:
    void wake() { didWake.emit(); }
};

} // namespace selvane::test
