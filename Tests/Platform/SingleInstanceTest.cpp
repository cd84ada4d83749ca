#include "Selvane/Platform/Linux/SingleInstance.h"

#include "Support/PrivateBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

namespace selvane::test {
namespace {

const auto name = QStringLiteral("com.lorbin.selvane");
const auto path = QStringLiteral("/com/lorbin/selvane");
const auto interface = QStringLiteral("org.freedesktop.Application");

TEST(SingleInstance, TheFirstClaimWins) {
    PrivateBus bus;
    SingleInstance first(bus.connect());
    SingleInstance second(bus.connect());
    EXPECT_EQ(first.claim(), SingleInstance::Claim::first);
    EXPECT_EQ(second.claim(), SingleInstance::Claim::second);
    EXPECT_EQ(first.claim(), SingleInstance::Claim::first);
}

TEST(SingleInstance, TheNameIsFreeAfterTheFirstHasEnded) {
    PrivateBus bus;
    auto first = std::make_unique<SingleInstance>(bus.connect());
    SingleInstance second(bus.connect());
    ASSERT_EQ(first->claim(), SingleInstance::Claim::first);
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);
    first.reset();
    EXPECT_TRUE(waitUntil([&] { return second.claim() == SingleInstance::Claim::first; }));
}

TEST(SingleInstance, WithoutABusNothingIsKnown) {
    SingleInstance instance(QDBusConnection(QStringLiteral("there is no such connection")));
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::noBus);
    EXPECT_FALSE(instance.activateFirst());
}

TEST(SingleInstance, OfManyAtOnceExactlyOneWins) {
    PrivateBus bus;
    std::vector<QDBusConnection> connections;
    for (int index = 0; index < 8; ++index)
        connections.push_back(bus.connect());
    std::array<SingleInstance::Claim, 8> claims{};
    {
        std::vector<std::unique_ptr<SingleInstance>> instances(8);
        std::vector<std::thread> starts;
        for (std::size_t index = 0; index < claims.size(); ++index) {
            starts.emplace_back([&, index] {
                instances[index] = std::make_unique<SingleInstance>(connections[index]);
                claims[index] = instances[index]->claim();
            });
        }
        for (std::thread& start : starts)
            start.join();
    }
    EXPECT_EQ(std::ranges::count(claims, SingleInstance::Claim::first), 1);
    EXPECT_EQ(std::ranges::count(claims, SingleInstance::Claim::second), 7);
}

struct Way {
    const char* name;
    QString method;
    QVariantList arguments;
};

void PrintTo(const Way& way, std::ostream* stream) {
    *stream << way.name;
}

class SingleInstanceWays : public testing::TestWithParam<Way> {};

TEST_P(SingleInstanceWays, Activates) {
    PrivateBus bus;
    SingleInstance first(bus.connect());
    int activations = 0;
    first.onActivate = [&] { ++activations; };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);
    const QDBusMessage reply =
        ask(bus.connect(), name, path, interface, GetParam().method, GetParam().arguments);
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    EXPECT_EQ(activations, 1);
}

INSTANTIATE_TEST_SUITE_P(All, SingleInstanceWays,
                         testing::Values(Way{"Activate", QStringLiteral("Activate"), {QVariantMap{}}},
                                         Way{"Open",
                                             QStringLiteral("Open"),
                                             {QStringList{QStringLiteral("file:///x")}, QVariantMap{}}},
                                         Way{"ActivateAction",
                                             QStringLiteral("ActivateAction"),
                                             {QStringLiteral("start"), QVariantList{}, QVariantMap{}}}),
                         [](const auto& test) { return test.param.name; });

TEST(SingleInstance, ASecondStartReachesTheFirstWithItsTokens) {
    PrivateBus bus;
    SingleInstance first(bus.connect());
    QByteArray token;
    first.onActivate = [&] { token = qgetenv("XDG_ACTIVATION_TOKEN"); };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);

    bool isAnswered = false;
    SingleInstance second(bus.connect());
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);
    ASSERT_EQ(ask(bus.connect(), name, path, interface, QStringLiteral("Activate"),
                  {QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("a token")}}})
                  .type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(token, "a token");

    token.clear();
    std::thread other([&] { isAnswered = second.activateFirst(); });
    EXPECT_TRUE(waitUntil([&] { return !token.isEmpty(); }));
    other.join();
    EXPECT_TRUE(isAnswered);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST(SingleInstance, AFirstThatHangsIsReported) {
    PrivateBus bus;
    SingleInstance first(bus.connect());
    SingleInstance second(bus.connect());
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);
    // The loop of the first doesn't run here.
    EXPECT_FALSE(second.activateFirst(std::chrono::milliseconds{50}));
}

} // namespace
} // namespace selvane::test
