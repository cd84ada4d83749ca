#include "Selvane/Platform/Linux/SingleInstance.h"

#include "Support/ManualScheduler.h"
#include "Support/PrivateBus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace selvane::test {
namespace {

const auto name = QStringLiteral("com.lorbin.selvane");
const auto path = QStringLiteral("/com/lorbin/selvane");
const auto interface = QStringLiteral("org.freedesktop.Application");

class SingleInstanceTest : public testing::Test {
protected:
    ManualScheduler _scheduler;
};

TEST_F(SingleInstanceTest, TheFirstClaimWins) {
    PrivateBus bus;
    SingleInstance first(bus.connect(), _scheduler);
    SingleInstance second(bus.connect(), _scheduler);
    EXPECT_EQ(first.claim(), SingleInstance::Claim::first);
    EXPECT_EQ(second.claim(), SingleInstance::Claim::second);
    EXPECT_EQ(first.claim(), SingleInstance::Claim::first);
}

TEST_F(SingleInstanceTest, TheNameIsFreeAfterTheFirstHasEnded) {
    PrivateBus bus;
    auto first = std::make_unique<SingleInstance>(bus.connect(), _scheduler);
    SingleInstance second(bus.connect(), _scheduler);
    ASSERT_EQ(first->claim(), SingleInstance::Claim::first);
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);
    first.reset();
    EXPECT_TRUE(waitUntil([&] { return second.claim() == SingleInstance::Claim::first; }));
}

TEST_F(SingleInstanceTest, WithoutABusNothingIsKnown) {
    SingleInstance instance(QDBusConnection(QStringLiteral("there is no such connection")), _scheduler);
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::noBus);
    EXPECT_FALSE(instance.activateFirst());
}

TEST_F(SingleInstanceTest, OfManyAtOnceExactlyOneWins) {
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
                instances[index] = std::make_unique<SingleInstance>(connections[index], _scheduler);
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

class SingleInstanceWays : public SingleInstanceTest, public testing::WithParamInterface<Way> {};

TEST_P(SingleInstanceWays, Activates) {
    PrivateBus bus;
    SingleInstance first(bus.connect(), _scheduler);
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

TEST_F(SingleInstanceTest, MessageThatTheBusStartedTheProgramForIsOnlyTheStart) {
    PrivateBus bus;
    SingleInstance first(bus.connect(), _scheduler, SingleInstance::Start::byBus);
    int activations = 0;
    std::vector<std::string> starts;
    first.onActivate = [&] { ++activations; };
    first.onNamedStart = [&](const std::string& id) { starts.push_back(id); };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);
    for (const int expected : {0, 1, 2}) {
        const QVariantMap data{{QStringLiteral("desktop-startup-id"), QString::number(expected)}};
        const QDBusMessage reply =
            ask(bus.connect(), name, path, interface, QStringLiteral("Activate"), {data});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        EXPECT_EQ(activations, expected);
    }
    EXPECT_EQ(starts, (std::vector<std::string>{"0", "1", "2"})) << "each has its busy pointer";
}

class SingleInstanceStartedByTheBus : public SingleInstanceTest {
protected:
    /// Whether the first message opens the panel that comes so long after the loop's first turn.
    bool opens(Seconds later) {
        PrivateBus bus;
        SingleInstance first(bus.connect(), _scheduler, SingleInstance::Start::byBus);
        bool isOpen = false;
        first.onActivate = [&] { isOpen = true; };
        EXPECT_EQ(first.claim(), SingleInstance::Claim::first);
        // Files are read before the loop runs.
        _scheduler.standStill(Seconds{60});
        _scheduler.turn();
        _scheduler.advance(later);
        EXPECT_EQ(
            ask(bus.connect(), name, path, interface, QStringLiteral("Activate"), {QVariantMap{}}).type(),
            QDBusMessage::ReplyMessage);
        return isOpen;
    }
};

TEST_F(SingleInstanceStartedByTheBus, MessageAtTheLoopsBeginningIsOnlyTheStart) {
    EXPECT_FALSE(opens(Seconds{0}));
    EXPECT_FALSE(opens(Seconds{2.9}));
}

TEST_F(SingleInstanceStartedByTheBus, MessageLongAfterAStartByAnotherMessageOpensThePanel) {
    EXPECT_TRUE(opens(Seconds{3.1}));
    EXPECT_TRUE(opens(Seconds{7200}));
}

/// A variable of the environment, which is unset before the test and after it.
class Variable {
public:
    explicit Variable(const char* variable) : _name(variable) { qunsetenv(_name); }
    ~Variable() { qunsetenv(_name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    void set(const QByteArray& value) { qputenv(_name, value); }
    /// The value, which is gone afterwards, as when Qt has shown it to a compositor.
    QByteArray take() {
        const QByteArray value = qgetenv(_name);
        qunsetenv(_name);
        return value;
    }

private:
    const char* _name;
};

/// Owns the program's name as a first process does, and writes down what it is sent.
class RecordingFirst final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    explicit RecordingFirst(QDBusConnection bus) {
        isThere =
            bus.registerObject(path, this, QDBusConnection::ExportAllSlots) && bus.registerService(name);
    }

    bool isThere = false;
    std::vector<QVariantMap> received;

public Q_SLOTS:
    void Activate(const QVariantMap& platformData) { received.push_back(platformData); }
};

TEST_F(SingleInstanceTest, ASecondStartSendsItsTokenIfItHasOne) {
    PrivateBus bus;
    Variable token("XDG_ACTIVATION_TOKEN");
    RecordingFirst first(bus.connect());
    ASSERT_TRUE(first.isThere);
    SingleInstance second(bus.connect(), _scheduler);
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);

    const auto start = [&] {
        bool isAnswered = false;
        std::atomic<bool> hasEnded = false;
        std::thread other([&] {
            isAnswered = second.activateFirst();
            hasEnded = true;
        });
        EXPECT_TRUE(waitUntil([&] { return hasEnded.load(); }));
        other.join();
        return isAnswered;
    };
    const auto key = QStringLiteral("activation-token");
    EXPECT_TRUE(start());
    token.set("of the launcher");
    EXPECT_TRUE(start());
    token.set("of the next start");
    EXPECT_TRUE(start());
    EXPECT_THAT(first.received,
                testing::ElementsAre(QVariantMap{}, QVariantMap{{key, QStringLiteral("of the launcher")}},
                                     QVariantMap{{key, QStringLiteral("of the next start")}}));
}

TEST_F(SingleInstanceTest, TheTokenIsInPlaceWhenTheFirstIsActivated) {
    PrivateBus bus;
    Variable variable("XDG_ACTIVATION_TOKEN");
    SingleInstance first(bus.connect(), _scheduler);
    std::vector<QByteArray> tokens;
    first.onActivate = [&] { tokens.push_back(variable.take()); };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);

    const QDBusConnection caller = bus.connect();
    for (const QString& token : {QStringLiteral("one"), QString(), QStringLiteral("two")}) {
        const QVariantMap platformData{{QStringLiteral("activation-token"), token}};
        ASSERT_EQ(ask(caller, name, path, interface, QStringLiteral("Activate"), {platformData}).type(),
                  QDBusMessage::ReplyMessage);
    }
    EXPECT_THAT(tokens, testing::ElementsAre("one", "", "two"));
}

TEST_F(SingleInstanceTest, ATokenDoesNotOutliveItsStart) {
    PrivateBus bus;
    const Variable variable("XDG_ACTIVATION_TOKEN");
    SingleInstance first(bus.connect(), _scheduler);
    std::vector<QByteArray> tokens;
    first.onActivate = [&] { tokens.push_back(qgetenv("XDG_ACTIVATION_TOKEN")); };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);

    // No window takes it, as where a panel is open already.
    const QVariantMap platformData{{QStringLiteral("activation-token"), QStringLiteral("one")}};
    ASSERT_EQ(ask(bus.connect(), name, path, interface, QStringLiteral("Activate"), {platformData}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_THAT(tokens, testing::ElementsAre("one"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(SingleInstanceTest, AStartThatTheDesktopNamedIsToldAfterTheActivation) {
    PrivateBus bus;
    SingleInstance first(bus.connect(), _scheduler);
    std::vector<std::string> heard;
    first.onActivate = [&] { heard.emplace_back("activation"); };
    first.onNamedStart = [&](const std::string& id) { heard.push_back(id); };
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);

    const QDBusConnection caller = bus.connect();
    const auto key = QStringLiteral("desktop-startup-id");
    for (const QVariantMap& platformData :
         {QVariantMap{}, QVariantMap{{key, QString()}}, QVariantMap{{key, QStringLiteral("menu-1_TIME5")}}}) {
        ASSERT_EQ(ask(caller, name, path, interface, QStringLiteral("Activate"), {platformData}).type(),
                  QDBusMessage::ReplyMessage);
    }
    EXPECT_THAT(heard, testing::ElementsAre("activation", "activation", "activation", "menu-1_TIME5"));
}

TEST_F(SingleInstanceTest, ABusThatRefusesTheNameIsNotTakenForNone) {
    PrivateBus bus("org.example.Other");
    const QDBusConnection connection = bus.connect();
    ASSERT_TRUE(connection.isConnected());
    SingleInstance instance(connection, _scheduler);
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::refused);
    EXPECT_EQ(instance.claim(), SingleInstance::Claim::refused) << "nothing of the first attempt is left";
}

TEST_F(SingleInstanceTest, AFirstThatHangsIsReported) {
    PrivateBus bus;
    SingleInstance first(bus.connect(), _scheduler);
    SingleInstance second(bus.connect(), _scheduler);
    ASSERT_EQ(first.claim(), SingleInstance::Claim::first);
    ASSERT_EQ(second.claim(), SingleInstance::Claim::second);
    // The loop of the first doesn't run here.
    EXPECT_FALSE(second.activateFirst(std::chrono::milliseconds{50}));
}

} // namespace
} // namespace selvane::test

#include "SingleInstanceTest.moc"
