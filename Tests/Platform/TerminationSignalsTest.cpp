#include "Selvane/Platform/Linux/TerminationSignals.h"

#include "Support/EventLoop.h"

#include <gtest/gtest.h>

#include <csignal>

namespace selvane {
namespace {

TEST(TerminationSignals, EachIsHeardAtTheNextTurn) {
    int heard = 0;
    const TerminationSignals watch([&] { ++heard; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = heard;
        ASSERT_EQ(std::raise(signal), 0);
        EXPECT_EQ(heard, before) << "not inside the signal";
        ASSERT_TRUE(test::waitUntil([&] { return heard == before + 1; }));
    }
}

TEST(TerminationSignals, ManyBeforeATurnAreOne) {
    int heard = 0;
    const TerminationSignals watch([&] { ++heard; });
    for (int count = 0; count < 1000; ++count)
        ASSERT_EQ(std::raise(SIGTERM), 0);
    ASSERT_TRUE(test::waitUntil([&] { return heard > 0; }));
    for (int turn = 0; turn < 20; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(heard, 1);
}

TEST(TerminationSignals, OneThatWasIgnoredStillIs) {
    const auto before = std::signal(SIGHUP, SIG_IGN);
    int heard = 0;
    {
        const TerminationSignals watch([&] { ++heard; });
        ASSERT_EQ(std::raise(SIGHUP), 0);
        ASSERT_EQ(std::raise(SIGTERM), 0);
        ASSERT_TRUE(test::waitUntil([&] { return heard > 0; }));
        EXPECT_EQ(heard, 1);
        ASSERT_EQ(std::raise(SIGHUP), 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(heard, 1);
    }
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

TEST(TerminationSignals, MeanWhatTheyMeantAfterwards) {
    {
        const TerminationSignals watch([] {});
    }
    EXPECT_EXIT(static_cast<void>(std::raise(SIGTERM)), testing::KilledBySignal(SIGTERM), "");
}

} // namespace
} // namespace selvane
