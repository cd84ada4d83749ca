#include "FakeNotificationServer.h"
#include "Selvane/App/Notifier.h"
#include "Selvane/Platform/Linux/FreedesktopNotifications.h"
#include "Selvane/Platform/Linux/LogindAwayMonitor.h"
#include "Support/MockLogind.h"
#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;

/// A model with the real notifications and the real ear for logind. Only the clocks are a test's.
class SleepTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(_logind.start());
        _server.appear();
        _harness.adjustServices = [this](AppServices& services) {
            services.makeNotifier = [this] {
                return std::make_unique<Notifier>(&_center, [this] { return _harness.now; });
            };
        };
        AppEnvironment environment = _harness.environment();
        environment.awayMonitor = &_monitor;
        _model = std::make_unique<AppModel>(std::move(environment));
        // Connects to the system bus.
        _harness.scheduler.turn();
        _wakings = _monitor.didWake.subscribe([this] { ++_timesWoken; });
    }

    /// The machine sleeps and logind tells of it. Nothing else has run when this returns.
    void sleep(Seconds length) {
        ASSERT_TRUE(_logind.prepareForSleep(true));
        _harness.now = adding(length, _harness.now);
        _harness.scheduler.standStill(length);
        const int before = _timesWoken;
        ASSERT_TRUE(_logind.prepareForSleep(false));
        ASSERT_TRUE(waitUntil([&] { return _timesWoken > before; }));
    }

    [[nodiscard]] std::vector<std::string> told() const {
        std::vector<std::string> summaries;
        for (const ToldNotification& told : _server.told)
            summaries.push_back(told.summary.toStdString());
        return summaries;
    }

    MockLogind _logind;
    PrivateBus _bus;
    FakeNotificationServer _server{_bus};
    ModelHarness _harness;
    FreedesktopNotifications _center{_bus.connect(), _harness.scheduler};
    LogindAwayMonitor _monitor{_harness.scheduler, [this] { return _logind.bus.connect(); }};
    std::unique_ptr<AppModel> _model;
    Subscription _wakings;
    int _timesWoken = 0;
};

TEST_F(SleepTest, PhaseThatEndsInASleepEndsWhenItShouldHaveAndIsToldAndRecordedOnce) {
    const Date start = _harness.now;
    _model->engine().start();
    _harness.pass(Seconds{600});
    sleep(Seconds{7200});
    // A break began at the waking; the end of the focus phase is told all the same.
    EXPECT_EQ(_model->engine().phase(), Phase::shortBreak);
    ASSERT_TRUE(waitUntil([&] { return !_server.told.empty(); }));
    _harness.pass(Seconds{5});
    sleep(Seconds{10});
    _harness.pass(Seconds{5});
    _server.hearAll(_bus.connect());

    EXPECT_THAT(told(), ElementsAre("Focus complete"));
    ASSERT_EQ(_model->sessions().size(), 1U);
    EXPECT_EQ(_model->sessions().front().end, adding(Seconds{1500}, start));
    EXPECT_TRUE(_model->sessions().front().completed);
}

TEST_F(SleepTest, PhaseThatOutlastsASleepIsToldAtItsEnd) {
    _model->engine().start();
    _harness.pass(Seconds{100});
    sleep(Seconds{1000});
    _harness.pass(Seconds{399});
    EXPECT_EQ(_model->sessions().size(), 0U);
    EXPECT_TRUE(_server.told.empty());
    _harness.pass(Seconds{2});
    ASSERT_TRUE(waitUntil([&] { return !_server.told.empty(); }));
    EXPECT_THAT(told(), ElementsAre("Focus complete"));
    EXPECT_EQ(_model->sessions().size(), 1U);
}

} // namespace
} // namespace selvane::test
