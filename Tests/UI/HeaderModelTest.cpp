#include "Selvane/UI/Popover/HeaderModel.h"

#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class HeaderModelTest : public testing::Test {
protected:
    void launch(WindowCoordinator* coordinator) {
        harness.launch();
        header = std::make_unique<HeaderModel>(harness.model(), harness.scheduler, coordinator);
    }
    void launch() { launch(&windows); }

    /// A day's goal reached in one session.
    void focusFor(Seconds length) {
        harness.model().settings().focusMinutes.set(120);
        harness.model().engine().start();
        harness.pass(length);
        harness.model().engine().reset();
    }

    test::ModelHarness harness;
    test::RecordingWindows windows{harness.journal};
    std::unique_ptr<HeaderModel> header;
};

TEST_F(HeaderModelTest, StreakBeginsAtNothing) {
    launch();
    EXPECT_EQ(header->streak(), QStringLiteral("0"));
    EXPECT_FALSE(header->isTodayMet());
    EXPECT_EQ(header->streakTooltip(), QStringLiteral("0-day streak. Hit today's goal to keep it going."));
}

TEST_F(HeaderModelTest, StreakCountsTodayOnceItsGoalIsMet) {
    launch();
    int changes = 0;
    QObject::connect(header.get(), &HeaderModel::streakChanged, header.get(), [&] { ++changes; });
    harness.model().settings().dailyGoalMinutes.set(10);
    focusFor(Seconds{601});
    EXPECT_EQ(header->streak(), QStringLiteral("1"));
    EXPECT_TRUE(header->isTodayMet());
    EXPECT_EQ(header->streakTooltip(), QStringLiteral("1-day streak. Today's goal is done."));
    EXPECT_EQ(changes, 1);
}

TEST_F(HeaderModelTest, StreakIsAtRiskOnTheNextDay) {
    launch();
    harness.model().settings().dailyGoalMinutes.set(10);
    focusFor(Seconds{601});
    harness.now += std::chrono::days{1};
    header->willShow();
    EXPECT_EQ(header->streak(), QStringLiteral("1"));
    EXPECT_FALSE(header->isTodayMet());
    EXPECT_EQ(header->streakTooltip(), QStringLiteral("1-day streak. Hit today's goal to keep it going."));
}

TEST_F(HeaderModelTest, StreakHearsOfEachNewDayWhileItIsShown) {
    launch();
    harness.model().settings().dailyGoalMinutes.set(10);
    harness.model().settings().streakFreezesEnabled.set(false);
    focusFor(Seconds{601});
    header->willShow();
    EXPECT_TRUE(header->isTodayMet());
    harness.pass(harness.model().untilNextDay() - Seconds{1});
    EXPECT_TRUE(header->isTodayMet());
    harness.pass(Seconds{2});
    EXPECT_FALSE(header->isTodayMet());
    EXPECT_EQ(header->streak(), QStringLiteral("1"));
    harness.pass(std::chrono::hours{24});
    EXPECT_EQ(header->streak(), QStringLiteral("0")) << "the goal was missed";
    header->didHide();
}

TEST_F(HeaderModelTest, TickNoticesANewDayThatNoTimerTold) {
    launch();
    harness.model().settings().dailyGoalMinutes.set(10);
    focusFor(Seconds{601});
    harness.model().engine().start();
    header->willShow();
    harness.now += std::chrono::days{1};
    harness.model().engine().changed.emit();
    EXPECT_FALSE(header->isTodayMet());
}

TEST_F(HeaderModelTest, WaitsForNoDayWhileNobodyLooks) {
    launch();
    const auto before = harness.scheduler.waiting();
    header->willShow();
    EXPECT_EQ(harness.scheduler.waiting(), before + 1);
    harness.model().settings().dailyGoalMinutes.set(90);
    EXPECT_EQ(harness.scheduler.waiting(), before + 1);
    header->didHide();
    EXPECT_EQ(harness.scheduler.waiting(), before);
    harness.model().settings().dailyGoalMinutes.set(80);
    EXPECT_EQ(harness.scheduler.waiting(), before);
}

TEST_F(HeaderModelTest, StreakFollowsTheGoal) {
    launch();
    harness.model().settings().dailyGoalMinutes.set(10);
    focusFor(Seconds{601});
    harness.model().settings().dailyGoalMinutes.set(60);
    EXPECT_FALSE(header->isTodayMet());
}

TEST_F(HeaderModelTest, MenuNamesItsEntriesAndTheirKeys) {
    launch();
    EXPECT_EQ(header->moreLabel(), QStringLiteral("More"));
    EXPECT_EQ(header->statisticsLabel(), QStringLiteral("Statistics"));
    EXPECT_EQ(header->statisticsShortcut(), QStringLiteral("Ctrl+S"));
    EXPECT_EQ(header->settingsLabel(), QStringLiteral("Settings"));
    EXPECT_EQ(header->settingsShortcut(), QStringLiteral("Ctrl+,"));
    EXPECT_EQ(header->whatsNewLabel(), QStringLiteral("What's New"));
    EXPECT_EQ(header->quitLabel(), QStringLiteral("Quit Selvane"));
    EXPECT_EQ(header->quitShortcut(), QStringLiteral("Ctrl+Q"));
}

TEST_F(HeaderModelTest, UpdateThatWasFoundIsOffered) {
    launch();
    EXPECT_FALSE(header->isUpdateAvailable());
    EXPECT_EQ(header->updateLabel(), QStringLiteral("Check for Updates…"));
    int changes = 0;
    QObject::connect(header.get(), &HeaderModel::updaterChanged, header.get(), [&] { ++changes; });
    harness.answers.updateAvailable = true;
    harness.model().updater().changed.emit();
    EXPECT_TRUE(header->isUpdateAvailable());
    EXPECT_EQ(header->updateLabel(), QStringLiteral("Update Available…"));
    EXPECT_EQ(changes, 1);
}

TEST_F(HeaderModelTest, ChecksForUpdatesWhereThatIsPossible) {
    launch();
    EXPECT_FALSE(header->canCheckForUpdates());
    harness.answers.canCheckForUpdates = true;
    harness.model().updater().changed.emit();
    EXPECT_TRUE(header->canCheckForUpdates());
    header->checkForUpdates();
    EXPECT_EQ(harness.journal.count("updater.check"), 1);
}

TEST_F(HeaderModelTest, EntriesOpenTheirPanes) {
    launch();
    harness.model().setWindowPane(Pane::music);
    header->openStatistics();
    EXPECT_EQ(harness.model().windowPane(), Pane::statistics);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
    header->openWhatsNew();
    EXPECT_EQ(harness.model().windowPane(), Pane::whatsNew);
    EXPECT_EQ(harness.journal.count("windows.forward"), 2);
    header->openSettings();
    EXPECT_EQ(harness.journal.count("windows.settings"), 1);
}

TEST_F(HeaderModelTest, WithoutAWindowTheEntriesDoNothing) {
    launch(nullptr);
    harness.model().setWindowPane(Pane::music);
    header->openStatistics();
    header->openWhatsNew();
    header->openSettings();
    EXPECT_EQ(harness.model().windowPane(), Pane::music);
}

TEST_F(HeaderModelTest, QuitAsksTheProgramToEnd) {
    launch();
    int quits = 0;
    QObject::connect(header.get(), &HeaderModel::quitRequested, header.get(), [&] { ++quits; });
    header->quit();
    EXPECT_EQ(quits, 1);
}

} // namespace
} // namespace selvane
