#pragma once

#include "Selvane/Platform/LoginItem.h"

#include <optional>
#include <string>
#include <utility>

namespace selvane::test {

/// A login item in memory, which fails on request.
class FakeLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isRegistered() const override { return _isRegistered; }
    [[nodiscard]] Outcome registerItem() override { return change(true); }
    [[nodiscard]] Outcome unregister() override { return change(false); }

    /// From now on each change fails with that text; with none they work.
    void fail(std::optional<std::string> text) { _failure = std::move(text); }

private:
    Outcome change(bool isRegistered) {
        if (_failure)
            return tl::unexpected(*_failure);
        _isRegistered = isRegistered;
        return {};
    }

    bool _isRegistered = false;
    std::optional<std::string> _failure;
};

} // namespace selvane::test
