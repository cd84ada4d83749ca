#pragma once

#include "Selvane/Platform/ProcessActivity.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {

/// Remembers what holds at present. Handles may outlive it.
class FakeProcessActivity final : public ProcessActivity {
public:
    Subscription begin(std::string_view reason) override {
        ++_begun;
        const auto entry = std::make_shared<std::string>(reason);
        _held->push_back(entry);
        return Subscription([held = _held, entry] { std::erase(*held, entry); });
    }

    /// The reasons of the handles that haven't ended, oldest first.
    [[nodiscard]] std::vector<std::string> held() const {
        std::vector<std::string> reasons;
        for (const auto& entry : *_held)
            reasons.push_back(*entry);
        return reasons;
    }
    /// How often an activity has begun.
    [[nodiscard]] int begun() const { return _begun; }

private:
    int _begun = 0;
    std::shared_ptr<std::vector<std::shared_ptr<std::string>>> _held =
        std::make_shared<std::vector<std::shared_ptr<std::string>>>();
};

} // namespace selvane::test
