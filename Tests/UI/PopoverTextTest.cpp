#include "Selvane/UI/Popover/PopoverText.h"

#include "Support/LocalTime.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class PopoverTextTest : public testing::Test {
protected:
    PopoverTextTest() { harness.launch(); }

    TimerEngine& engine() { return harness.model().engine(); }
    std::string status(const QLocale& locale = QLocale(QLocale::English, QLocale::UnitedKingdom)) {
        return PopoverText::sessionStatus(engine(), harness.calendar, locale).toStdString();
    }

    test::ModelHarness harness;
};

TEST_F(PopoverTextTest, StatusTellsPositionPauseAndEnd) {
    EXPECT_EQ(status(), "Session 1 of 4");
    engine().start();
    EXPECT_EQ(status(), "Session 1 of 4 · ends 10:25");
    engine().pause();
    EXPECT_EQ(status(), "Session 1 of 4 · paused");
    engine().reset();
    engine().select(Phase::shortBreak);
    EXPECT_EQ(status(), "Short Break");
    engine().start();
    EXPECT_EQ(status(), "Short Break · ends 10:05");
}

TEST_F(PopoverTextTest, EndIsToldInTheUsersZoneAndManner) {
    harness.calendar = test::zone("America/New_York");
    engine().start();
    EXPECT_EQ(status(), "Session 1 of 4 · ends 05:25");
    harness.calendar = test::zone("Asia/Tokyo");
    EXPECT_EQ(status(QLocale(QLocale::English, QLocale::UnitedStates)), "Session 1 of 4 · ends 7:25 PM");
}

TEST_F(PopoverTextTest, EndNeverHasSeconds) {
    engine().start();
    EXPECT_EQ(status(QLocale::c()), "Session 1 of 4 · ends 10:25");
    EXPECT_EQ(status(QLocale(QLocale::German)), "Session 1 of 4 · ends 10:25");
    EXPECT_EQ(status(QLocale(QLocale::Japanese)), "Session 1 of 4 · ends 10:25");
}

TEST_F(PopoverTextTest, PositionFollowsTheCycle) {
    harness.model().settings().autoStartBreaks.set(false);
    engine().start();
    harness.pass(Seconds{1501});
    engine().skip();
    EXPECT_EQ(status(), "Session 2 of 4");
    harness.model().settings().sessionsBeforeLongBreak.set(3);
    EXPECT_EQ(status(), "Session 2 of 3");
}

} // namespace
} // namespace selvane
