#include "SelvaneCore/Signal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace selvane {
namespace {

using Calls = std::vector<std::string>;

TEST(Signal, CallsListenersInTheOrderOfSubscription) {
    Signal<int> signal;
    Calls calls;
    const Subscription a = signal.subscribe([&](int value) { calls.push_back("a" + std::to_string(value)); });
    const Subscription b = signal.subscribe([&](int value) { calls.push_back("b" + std::to_string(value)); });
    signal.emit(1);
    signal.emit(2);
    EXPECT_EQ(calls, (Calls{"a1", "b1", "a2", "b2"}));
}

TEST(Signal, WithoutListenersNothingHappens) {
    const Signal<> signal;
    signal.emit();
}

TEST(Signal, AnEndedSubscriptionIsNotCalledAgain) {
    Signal<> signal;
    int calls = 0;
    Subscription subscription = signal.subscribe([&] { ++calls; });
    signal.emit();
    subscription.end();
    signal.emit();
    EXPECT_EQ(calls, 1);
}

TEST(Signal, AListenerMayEndItself) {
    Signal<> signal;
    Calls calls;
    Subscription a;
    a = signal.subscribe([&] {
        calls.push_back("a");
        a.end();
    });
    const Subscription b = signal.subscribe([&] { calls.push_back("b"); });
    signal.emit();
    signal.emit();
    EXPECT_EQ(calls, (Calls{"a", "b", "b"}));
}

TEST(Signal, AListenerMayEndALaterOneWithinTheEmission) {
    Signal<> signal;
    Calls calls;
    Subscription b;
    const Subscription a = signal.subscribe([&] {
        calls.push_back("a");
        b.end();
    });
    b = signal.subscribe([&] { calls.push_back("b"); });
    const Subscription c = signal.subscribe([&] { calls.push_back("c"); });
    signal.emit();
    EXPECT_EQ(calls, (Calls{"a", "c"}));
}

TEST(Signal, AListenerAddedDuringAnEmissionWaitsForTheNext) {
    Signal<> signal;
    Calls calls;
    Subscription added;
    const Subscription a = signal.subscribe([&] {
        calls.push_back("a");
        if (!added)
            added = signal.subscribe([&] { calls.push_back("added"); });
    });
    signal.emit();
    EXPECT_EQ(calls, (Calls{"a"}));
    signal.emit();
    EXPECT_EQ(calls, (Calls{"a", "a", "added"}));
}

TEST(Signal, AListenerMayEmitAgain) {
    Signal<int> signal;
    Calls calls;
    const Subscription a = signal.subscribe([&](int value) {
        calls.push_back("a" + std::to_string(value));
        if (value > 0)
            signal.emit(value - 1);
    });
    const Subscription b = signal.subscribe([&](int value) { calls.push_back("b" + std::to_string(value)); });
    signal.emit(1);
    EXPECT_EQ(calls, (Calls{"a1", "a0", "b0", "b1"}));
}

TEST(Signal, AListenerMayDestroyTheSignal) {
    auto signal = std::make_unique<Signal<>>();
    Calls calls;
    const Subscription a = signal->subscribe([&] {
        calls.push_back("a");
        signal.reset();
    });
    const Subscription b = signal->subscribe([&] { calls.push_back("b"); });
    signal->emit();
    EXPECT_EQ(signal, nullptr);
    EXPECT_EQ(calls, (Calls{"a", "b"}));
}

TEST(Signal, ASubscriptionMayOutliveTheSignal) {
    Subscription subscription;
    {
        Signal<> signal;
        subscription = signal.subscribe([] {});
    }
    subscription.end();
    EXPECT_FALSE(subscription);
}

TEST(Signal, TheListenerIsReleasedWithItsSubscription) {
    Signal<> signal;
    const auto held = std::make_shared<int>(1);
    Subscription subscription = signal.subscribe([held] {});
    EXPECT_EQ(held.use_count(), 2);
    subscription.end();
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace selvane
