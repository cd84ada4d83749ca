#include "SelvaneCore/Lifetime.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace selvane {
namespace {

TEST(Lifetime, AGuardedCallbackRunsWhileTheOwnerLives) {
    const Lifetime lifetime;
    std::string heard;
    const std::function<void(int, const std::string&)> callback =
        lifetime.guard([&](int number, const std::string& text) { heard = std::to_string(number) + text; });
    callback(7, "x");
    EXPECT_EQ(heard, "7x");
}

TEST(Lifetime, AGuardedCallbackIsSilentAfterwards) {
    auto lifetime = std::make_optional<Lifetime>();
    int calls = 0;
    const std::function<void()> callback = lifetime->guard([&] { ++calls; });
    lifetime.reset();
    callback();
    EXPECT_EQ(calls, 0);
}

TEST(Lifetime, ACopyOfACallbackIsGuardedToo) {
    auto lifetime = std::make_optional<Lifetime>();
    int calls = 0;
    const std::function<void()> callback = lifetime->guard([&] { ++calls; });
    const std::function<void()> copy = callback; // NOLINT(performance-unnecessary-copy-initialization)
    copy();
    lifetime.reset();
    copy();
    EXPECT_EQ(calls, 1);
}

TEST(Lifetime, AGuardedCallbackTakesArgumentsThatOnlyMove) {
    const Lifetime lifetime;
    int heard = 0;
    auto callback = lifetime.guard([&](std::unique_ptr<int> value) { heard = *value; });
    callback(std::make_unique<int>(3));
    EXPECT_EQ(heard, 3);
}

TEST(Lifetime, TheTokenTellsWhetherTheOwnerIsGone) {
    auto lifetime = std::make_optional<Lifetime>();
    const std::weak_ptr<const bool> token = lifetime->token();
    EXPECT_FALSE(token.expired());
    lifetime.reset();
    EXPECT_TRUE(token.expired());
}

TEST(Lifetime, AnOwnerMayEndInsideItsCallback) {
    auto lifetime = std::make_optional<Lifetime>();
    int calls = 0;
    const std::function<void()> callback = lifetime->guard([&] {
        ++calls;
        lifetime.reset();
    });
    callback();
    callback();
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace selvane
