#include "Selvane/Platform/Scheduler.h"

#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "Support/EventLoop.h"
#include "Support/ManualScheduler.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace selvane::test {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::ElementsAre;
using testing::Gt;
using testing::Lt;

/// A scheduler together with what makes time pass for it.
class Clockwork {
public:
    virtual ~Clockwork() = default;
    virtual Scheduler& scheduler() = 0;
    /// One turn of the main loop.
    virtual void turn() = 0;
    /// Lets time pass until `condition` holds; false if it never does.
    virtual bool passUntil(const std::function<bool()>& condition) = 0;
    /// Time in which no turn happens, as in a suspend.
    virtual void standStill(Seconds length) = 0;
    virtual void destroyScheduler() = 0;
};

class ManualClockwork final : public Clockwork {
public:
    Scheduler& scheduler() override { return *_scheduler; }
    void turn() override { _scheduler->turn(); }
    bool passUntil(const std::function<bool()>& condition) override {
        for (int step = 0; step < 10'000 && !condition(); ++step)
            _scheduler->advance(milliseconds{1});
        return condition();
    }
    void standStill(Seconds length) override { _scheduler->suspend(length); }
    void destroyScheduler() override { _scheduler.reset(); }

private:
    std::unique_ptr<ManualScheduler> _scheduler = std::make_unique<ManualScheduler>();
};

class LinuxClockwork final : public Clockwork {
public:
    Scheduler& scheduler() override { return *_scheduler; }
    void turn() override {
        bool turned = false;
        _scheduler->post([&] { turned = true; });
        waitUntil([&] { return turned; });
    }
    bool passUntil(const std::function<bool()>& condition) override { return waitUntil(condition); }
    void standStill(Seconds length) override {
        std::this_thread::sleep_for(length);
        turn();
    }
    void destroyScheduler() override { _scheduler.reset(); }

private:
    std::unique_ptr<LinuxScheduler> _scheduler = std::make_unique<LinuxScheduler>();
};

struct Kind {
    std::string name;
    std::function<std::unique_ptr<Clockwork>()> make;
};

void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

class SchedulerContract : public testing::TestWithParam<Kind> {
protected:
    Scheduler& scheduler() { return _clockwork->scheduler(); }

    std::unique_ptr<Clockwork> _clockwork = GetParam().make();
    std::vector<std::string> _journal;

    Scheduler::Work note(const std::string& word) {
        return [this, word] { _journal.push_back(word); };
    }
    bool passUntilNoted(std::size_t count) {
        return _clockwork->passUntil([&] { return _journal.size() >= count; });
    }
};

TEST_P(SchedulerContract, WorkNeverRunsInsideTheCallThatSchedulesIt) {
    scheduler().post(note("posted"));
    const auto now = scheduler().after(Seconds{0}, note("after zero"));
    const auto before = scheduler().after(Seconds{-1}, note("after less than zero"));
    EXPECT_THAT(_journal, ElementsAre());
    _clockwork->turn();
    EXPECT_THAT(_journal, ElementsAre("posted", "after zero", "after less than zero"));
}

TEST_P(SchedulerContract, WorkRunsInTheOrderOfItsMoments) {
    std::array<Subscription, 3> timers;
    Seconds begin{0};
    // On a machine that stops in between, their moments come in another order.
    do {
        begin = scheduler().now();
        timers[0] = scheduler().after(milliseconds{9}, note("9"));
        timers[1] = scheduler().after(milliseconds{3}, note("3"));
        timers[2] = scheduler().after(milliseconds{6}, note("6"));
    } while (scheduler().now() - begin > milliseconds{2});
    ASSERT_TRUE(passUntilNoted(3));
    EXPECT_THAT(_journal, ElementsAre("3", "6", "9"));
}

TEST_P(SchedulerContract, WorkIsNeverEarly) {
    const Seconds start = scheduler().now();
    std::optional<Seconds> ran;
    const auto timer = scheduler().after(milliseconds{7}, [&] { ran = scheduler().now(); });
    ASSERT_TRUE(_clockwork->passUntil([&] { return ran.has_value(); }));
    EXPECT_GE((*ran - start).count(), 0.007 - 1e-9);
}

TEST_P(SchedulerContract, WorkOfAfterRunsOnce) {
    const auto once = scheduler().after(milliseconds{1}, note("once"));
    const auto later = scheduler().after(milliseconds{15}, note("later"));
    ASSERT_TRUE(passUntilNoted(2));
    EXPECT_THAT(_journal, ElementsAre("once", "later"));
}

TEST_P(SchedulerContract, EndedHandlesNeverRun) {
    auto ended = scheduler().after(milliseconds{1}, note("ended"));
    auto endedAtOnce = scheduler().after(Seconds{0}, note("ended at once"));
    auto repeated = scheduler().every(milliseconds{1}, Seconds{0}, note("repeated"));
    const auto kept = scheduler().after(milliseconds{10}, note("kept"));
    ended.end();
    endedAtOnce.end();
    repeated.end();
    ASSERT_TRUE(passUntilNoted(1));
    EXPECT_THAT(_journal, ElementsAre("kept"));
}

TEST_P(SchedulerContract, WorkMayEndOtherWorkThatIsDueInTheSameTurn) {
    Subscription second;
    scheduler().post([&] {
        _journal.emplace_back("first");
        second.end();
    });
    second = scheduler().after(Seconds{0}, note("second"));
    scheduler().post(note("third"));
    _clockwork->turn();
    EXPECT_THAT(_journal, ElementsAre("first", "third"));
}

TEST_P(SchedulerContract, RepeatedWorkMayEndItself) {
    Subscription timer;
    timer = scheduler().every(milliseconds{2}, Seconds{0}, [&] {
        _journal.emplace_back("run");
        timer.end();
    });
    const auto later = scheduler().after(milliseconds{15}, note("later"));
    ASSERT_TRUE(passUntilNoted(2));
    EXPECT_THAT(_journal, ElementsAre("run", "later"));
}

TEST_P(SchedulerContract, WorkMayOwnItsHandleAndDestroyIt) {
    auto owner = std::make_shared<Subscription>();
    std::weak_ptr<Subscription> watch = owner;
    *owner = scheduler().after(milliseconds{1}, [this, owner]() mutable {
        _journal.emplace_back("run");
        owner.reset();
    });
    owner.reset();
    ASSERT_TRUE(passUntilNoted(1));
    EXPECT_TRUE(watch.expired());
}

TEST_P(SchedulerContract, EndingAHandleMayEndAnotherOneThatItsWorkHolds) {
    auto inner = std::make_shared<Subscription>(scheduler().after(milliseconds{5}, note("inner")));
    auto outer = scheduler().after(milliseconds{5}, [inner] {});
    inner.reset();
    outer.end();
    const auto later = scheduler().after(milliseconds{10}, note("later"));
    ASSERT_TRUE(passUntilNoted(1));
    EXPECT_THAT(_journal, ElementsAre("later"));
}

TEST_P(SchedulerContract, WorkMayScheduleMore) {
    scheduler().post([&] {
        _journal.emplace_back("outer");
        scheduler().post(note("inner"));
        EXPECT_THAT(_journal, ElementsAre("outer"));
    });
    ASSERT_TRUE(passUntilNoted(2));
    EXPECT_THAT(_journal, ElementsAre("outer", "inner"));
}

TEST_P(SchedulerContract, WorkThatATurnSchedulesWaitsForTheNext) {
    Subscription later;
    scheduler().post([&] {
        _journal.emplace_back("first");
        scheduler().post(note("posted"));
        later = scheduler().after(Seconds{0}, note("after zero"));
    });
    scheduler().post(note("second"));
    _clockwork->turn();
    EXPECT_THAT(_journal, ElementsAre("first", "second"));
    ASSERT_TRUE(passUntilNoted(4));
    EXPECT_THAT(_journal, ElementsAre("first", "second", "posted", "after zero"));
}

TEST_P(SchedulerContract, HandlesMayOutliveTheScheduler) {
    auto after = scheduler().after(milliseconds{1}, note("after"));
    auto every = scheduler().every(milliseconds{1}, Seconds{0}, note("every"));
    _clockwork->destroyScheduler();
    after.end();
    every.end();
    EXPECT_THAT(_journal, ElementsAre());
}

TEST_P(SchedulerContract, RepeatedWorkRunsOnceForEveryMultipleOfItsInterval) {
    const Seconds start = scheduler().now();
    std::vector<int> turns;
    const auto timer = scheduler().every(milliseconds{8}, Seconds{0}, [&] {
        turns.push_back(static_cast<int>(std::floor((scheduler().now() - start).count() / 0.008 + 1e-6)));
    });
    ASSERT_TRUE(_clockwork->passUntil([&] { return turns.size() >= 3; }));
    // 1. Turns that pass while nothing runs are made up for by a single one.
    const std::size_t before = turns.size();
    _clockwork->standStill(milliseconds{30});
    ASSERT_TRUE(_clockwork->passUntil([&] { return turns.size() >= before + 3; }));
    // 2. So there are fewer turns than multiples, and the first is not before its time.
    EXPECT_GE(turns.front(), 1);
    EXPECT_LE(turns.size() + 2, static_cast<std::size_t>(turns.back())) << testing::PrintToString(turns);
    EXPECT_GE(turns[before], turns[before - 1] + 3);
}

TEST_P(SchedulerContract, TheClockNeverGoesBack) {
    const Seconds before = scheduler().now();
    _clockwork->standStill(milliseconds{2});
    EXPECT_GE((scheduler().now() - before).count(), 0.002 - 1e-9);
}

INSTANTIATE_TEST_SUITE_P(All, SchedulerContract,
                         testing::Values(Kind{"Manual", [] { return std::make_unique<ManualClockwork>(); }},
                                         Kind{"Linux", [] { return std::make_unique<LinuxClockwork>(); }}),
                         [](const auto& test) { return test.param.name; });

TEST(ManualScheduler, RepeatedWorkKeepsItsMultiplesAfterASuspend) {
    ManualScheduler scheduler;
    std::vector<double> runs;
    const auto timer =
        scheduler.every(Seconds{10}, Seconds{1}, [&] { runs.push_back(scheduler.now().count()); });
    scheduler.suspend(Seconds{34});
    scheduler.advance(Seconds{20});
    EXPECT_THAT(runs, ElementsAre(34, 40, 50));
}

/// The lines "it_value" of the timers that this process has open, as the kernel tells them.
std::vector<QByteArray> kernelTimers() {
    std::vector<QByteArray> values;
    const QDir files(QStringLiteral("/proc/self/fd"));
    for (const QString& name : files.entryList(QDir::System | QDir::Files)) {
        if (!QFile::symLinkTarget(files.filePath(name)).endsWith(QLatin1String("[timerfd]")))
            continue;
        QFile details(QStringLiteral("/proc/self/fdinfo/") + name);
        if (!details.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : details.readAll().split('\n')) {
            if (line.startsWith("it_value:"))
                values.push_back(line.simplified());
        }
    }
    return values;
}

int wholeSeconds(const QByteArray& line) {
    return line.mid(line.indexOf('(') + 1).split(',').constFirst().toInt();
}

TEST(LinuxScheduler, HasOneKernelTimerWhichIsOffWhileNothingWaits) {
    LinuxScheduler scheduler;
    EXPECT_THAT(kernelTimers(), ElementsAre("it_value: (0, 0)"));
    const Seconds begin = scheduler.now();
    const auto passed = [&] { return (scheduler.now() - begin).count(); };
    auto first = scheduler.after(Seconds{100}, [] {});
    auto second = scheduler.every(Seconds{200}, Seconds{1}, [] {});
    ASSERT_EQ(kernelTimers().size(), 1U);
    const int untilFirst = wholeSeconds(kernelTimers().front());
    EXPECT_THAT(untilFirst, AllOf(Gt(99 - passed()), Lt(100)));
    first.end();
    const int untilSecond = wholeSeconds(kernelTimers().front());
    EXPECT_THAT(untilSecond, AllOf(Gt(200 - passed()), Lt(201))) << "its tolerance included";
    second.end();
    EXPECT_THAT(kernelTimers(), ElementsAre("it_value: (0, 0)"));
}

TEST(LinuxScheduler, ToleranceLetsWorkShareAWakeUp) {
    LinuxScheduler scheduler;
    std::vector<std::string> journal;
    Seconds start{0};
    Seconds firstTick{0};
    Subscription tick;
    Subscription single;
    // Begun further apart, on a machine that stops in between, they have no wake-up to share.
    do {
        start = scheduler.now();
        tick = scheduler.every(milliseconds{20}, milliseconds{20}, [&] {
            if (firstTick == Seconds{0})
                firstTick = scheduler.now() - start;
            journal.emplace_back("tick");
        });
        single = scheduler.after(milliseconds{30}, [&] { journal.emplace_back("single"); });
    } while (scheduler.now() - start > milliseconds{5});
    ASSERT_TRUE(waitUntil([&] { return journal.size() >= 2; }));
    EXPECT_EQ(journal[0], "tick");
    EXPECT_EQ(journal[1], "single");
    EXPECT_GE(firstTick.count(), 0.030);
}

TEST(LinuxSchedulerDeathTest, WithoutATimerOfTheSystemTheProgramEnds) {
    // Other tests have left threads behind, which a fork wouldn't have.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto startWithoutDescriptors = [] {
        // Sanitizers check the first object of a type with descriptors of their own.
        LinuxScheduler().post([] {});
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        // What runs at the exit may need them again.
        static rlim_t before = limit.rlim_cur;
        std::atexit([] {
            rlimit again{};
            getrlimit(RLIMIT_NOFILE, &again);
            again.rlim_cur = before;
            setrlimit(RLIMIT_NOFILE, &again);
        });
        limit.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &limit);
        LinuxScheduler scheduler;
    };
    EXPECT_EXIT(startWithoutDescriptors(), testing::ExitedWithCode(EXIT_FAILURE),
                "^Selvane: the system gives no timer \\(Too many open files\\)");
}

TEST(LinuxScheduler, TakesLengthsOfAnySize) {
    LinuxScheduler scheduler;
    int runs = 0;
    const auto huge = scheduler.after(Seconds{1e300}, [&] { ++runs; });
    const auto infinite = scheduler.after(Seconds{std::numeric_limits<double>::infinity()}, [&] { ++runs; });
    bool ran = false;
    const auto undefined =
        scheduler.after(Seconds{std::numeric_limits<double>::quiet_NaN()}, [&] { ran = true; });
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace selvane::test
