#include "Selvane/Platform/Linux/LogindAwayMonitor.h"

#include "Support/ManualScheduler.h"
#include "Support/MockLogind.h"

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

class LogindAwayMonitorTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(_logind.start()); }

    void prepareForSleep(bool goesToSleep) { ASSERT_TRUE(_logind.prepareForSleep(goesToSleep)); }

    MockLogind _logind;
    ManualScheduler _scheduler;
};

TEST_F(LogindAwayMonitorTest, TellsEachWakingOnce) {
    LogindAwayMonitor monitor(_scheduler, [&] { return _logind.bus.connect(); });
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
    LogindAwayMonitor monitor(_scheduler, [&] { return _logind.bus.connect(); });
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
