#pragma once

#include "Selvane/Platform/AttentionSignal.h"

namespace selvane::test {

/// Counts the signals.
class FakeAttentionSignal final : public AttentionSignal {
public:
    void perform() override { ++count; }

    int count = 0;
};

} // namespace selvane::test
