#include "Selvane/Platform/Linux/LogindAwayMonitor.h"

#include "Support/EndWithTest.h"
#include "Support/ManualScheduler.h"
#include "Support/PrivateBus.h"

#include <QtCore/QProcess>

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

const auto logind = QStringLiteral("org.freedesktop.login1");
const auto logindPath = QStringLiteral("/org/freedesktop/login1");

/// A system bus with a logind that sleeps and wakes when a test says so.
class LogindAwayMonitorTest : public testing::Test {
protected:
    void SetUp() override {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), _bus.address());
        _logind.setProcessEnvironment(environment);
        _logind.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        endWithTest(_logind);
        _logind.start(QStringLiteral("/usr/bin/python3"),
                      {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                       QStringLiteral("--template"), QStringLiteral("logind")});
        ASSERT_TRUE(_logind.waitForStarted());
        ASSERT_TRUE(waitUntil([&] {
            return ask(_control, QStringLiteral("org.freedesktop.DBus"),
                       QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                       QStringLiteral("NameHasOwner"), {logind})
                .arguments()
                .value(0)
                .toBool();
        }));
    }

    void TearDown() override {
        _logind.kill();
        _logind.waitForFinished();
    }

    void prepareForSleep(bool goesToSleep) {
        const QDBusMessage reply =
            ask(_control, logind, logindPath, QStringLiteral("org.freedesktop.DBus.Mock"),
                QStringLiteral("EmitSignal"),
                {logind + QStringLiteral(".Manager"), QStringLiteral("PrepareForSleep"), QStringLiteral("b"),
                 QVariantList{goesToSleep}});
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    PrivateBus _bus;
    QDBusConnection _control = _bus.connect();
    QProcess _logind;
    ManualScheduler _scheduler;
};

TEST_F(LogindAwayMonitorTest, TellsEachWakingOnce) {
    LogindAwayMonitor monitor(_scheduler, [&] { return _bus.connect(); });
    int wakings = 0;
    const auto subscription = monitor.didWake.subscribe([&] { ++wakings; });
    _scheduler.turn();

    prepareForSleep(true);
    prepareForSleep(false);
    ASSERT_TRUE(waitUntil([&] { return wakings == 1; }));
    // A second end of the same sleep is none; the next sleep has one again.
    prepareForSleep(false);
    prepareForSleep(true);
    prepareForSleep(false);
    ASSERT_TRUE(waitUntil([&] { return wakings == 2; }));
    prepareForSleep(true);
    prepareForSleep(false);
    ASSERT_TRUE(waitUntil([&] { return wakings >= 3; }));
    EXPECT_EQ(wakings, 3);
}

TEST_F(LogindAwayMonitorTest, TellsTheWakingFromASleepThatBeganBefore) {
    LogindAwayMonitor monitor(_scheduler, [&] { return _bus.connect(); });
    int wakings = 0;
    const auto subscription = monitor.didWake.subscribe([&] { ++wakings; });
    _scheduler.turn();
    prepareForSleep(false);
    EXPECT_TRUE(waitUntil([&] { return wakings == 1; }));
}

TEST(LogindAwayMonitorWithoutBus, HearsNothingAndConnectsOnlyAtTheFirstTurn) {
    ManualScheduler scheduler;
    int connections = 0;
    LogindAwayMonitor monitor(scheduler, [&] {
        ++connections;
        return QDBusConnection(QStringLiteral("there is no such connection"));
    });
    EXPECT_EQ(connections, 0);
    scheduler.turn();
    EXPECT_EQ(connections, 1);
}

TEST(LogindAwayMonitorWithoutBus, MayEndBeforeTheFirstTurn) {
    ManualScheduler scheduler;
    int connections = 0;
    {
        LogindAwayMonitor monitor(scheduler, [&] {
            ++connections;
            return QDBusConnection(QString());
        });
    }
    scheduler.turn();
    EXPECT_EQ(connections, 0);
}

} // namespace
} // namespace selvane::test
