#include "Selvane/UI/AppDelegate.h"

#include "Support/FakeActivationMonitor.h"
#include "Support/FakeAppearance.h"
#include "Support/FakePanel.h"
#include "Support/FakePressMonitor.h"
#include "Support/FakeProgramWindows.h"
#include "Support/FakeStatusItemHost.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() : delegate(harness.environment()) { harness.journal.clear(); }

    void finishLaunching() {
        delegate.applicationDidFinishLaunching({&host, &appearance, &presses, &activations, &programWindows,
                                                [this](const PanelContext& context) {
                                                    EXPECT_EQ(context.model, &delegate.model());
                                                    EXPECT_EQ(context.appearance, &appearance);
                                                    EXPECT_EQ(context.scheduler, &harness.scheduler);
                                                    EXPECT_EQ(context.windows, &windows);
                                                    return std::make_unique<test::FakePanel>(harness.journal);
                                                },
                                                &windows,
                                                [this] {
                                                    EXPECT_EQ(givenBack, 0) << "what it needs goes as well";
                                                    ++prepared;
                                                },
                                                [this] { ++givenBack; }});
    }

    int prepared = 0;
    int givenBack = 0;

    test::ModelHarness harness;
    test::FakeStatusItemHost host;
    test::FakeAppearance appearance;
    test::FakePressMonitor presses;
    test::FakeActivationMonitor activations;
    test::FakeProgramWindows programWindows;
    test::RecordingWindows windows{harness.journal};
    AppDelegate delegate;
};

TEST_F(AppDelegateTest, LaunchShowsTheItemThenBacksUpThenLooksForNews) {
    EXPECT_FALSE(host.content());
    finishLaunching();
    EXPECT_TRUE(host.content());
    EXPECT_THAT(harness.journal.entries(), ElementsAre("lifecycle.backUpDaily", "lifecycle.whatsNew"));
}

/// What a launch does with data that were recovered so before.
std::vector<std::string> journalOfLaunchAfter(AppModel::Recovery recovery) {
    test::ModelHarness harness;
    harness.answers.recoveryNotice = "What happened.";
    harness.answers.recovery = recovery;
    test::FakeStatusItemHost host;
    test::FakeAppearance appearance;
    test::FakePressMonitor presses;
    test::FakeActivationMonitor activations;
    test::FakeProgramWindows programWindows;
    AppDelegate delegate(harness.environment());
    EXPECT_THAT(harness.journal.entries(), Not(Contains(StartsWith("notifications.post")))) << "too early";
    harness.journal.clear();
    delegate.applicationDidFinishLaunching({&host, &appearance, &presses, &activations, &programWindows, {}});
    return harness.journal.entries();
}

TEST(AppDelegate, RecoveryIsToldLast) {
    EXPECT_THAT(journalOfLaunchAfter(AppModel::Recovery::complete),
                ElementsAre("lifecycle.backUpDaily", "lifecycle.whatsNew",
                            "notifications.post Selvane restored your data: What happened."));
}

TEST_F(AppDelegateTest, WithoutARecoveryNothingIsPosted) {
    finishLaunching();
    for (const std::string& entry : harness.journal.entries())
        EXPECT_FALSE(entry.starts_with("notifications.post")) << entry;
}

TEST_F(AppDelegateTest, MemoryOfTheStartIsGivenBackOnceItIsOver) {
    finishLaunching();
    harness.pass(Seconds{0.9});
    EXPECT_EQ(givenBack, 0);
    harness.pass(Seconds{0.2});
    EXPECT_EQ(givenBack, 1);
    harness.pass(Seconds{3600});
    EXPECT_EQ(givenBack, 1);
}

TEST_F(AppDelegateTest, PanelIsPreparedOnceTheStartIsOver) {
    finishLaunching();
    harness.pass(Seconds{0.9});
    EXPECT_EQ(prepared, 0);
    harness.pass(Seconds{0.2});
    EXPECT_EQ(prepared, 1);
    delegate.applicationShouldHandleReopen();
    harness.pass(Seconds{10});
    EXPECT_EQ(prepared, 1);
}

TEST_F(AppDelegateTest, PanelOpenedDuringTheStartNeedsNoPreparation) {
    finishLaunching();
    delegate.applicationShouldHandleReopen();
    harness.pass(Seconds{10});
    EXPECT_EQ(prepared, 0);
}

TEST_F(AppDelegateTest, MemoryOfTheFirstOpeningIsGivenBackOnceItIsOver) {
    finishLaunching();
    harness.pass(Seconds{0.5});
    delegate.applicationShouldHandleReopen();
    harness.pass(Seconds{1});
    EXPECT_EQ(givenBack, 0) << "the start's waits for the opening";
    harness.pass(Seconds{1.1});
    EXPECT_EQ(givenBack, 1);
    delegate.applicationShouldHandleReopen();
    harness.pass(Seconds{1});
    delegate.applicationShouldHandleReopen();
    harness.pass(Seconds{10});
    EXPECT_EQ(givenBack, 1) << "what is opened again needs what it finds";
}

TEST_F(AppDelegateTest, MemoryOfAPhaseIsGivenBackOnceItIsOver) {
    finishLaunching();
    harness.pass(Seconds{2});
    ASSERT_EQ(std::exchange(givenBack, 0), 1);
    TimerEngine& engine = delegate.model().engine();
    engine.toggle();
    harness.pass(Seconds{600});
    EXPECT_EQ(givenBack, 0);
    const std::weak_ptr<const TemplateImage> seen = host.content()->image;
    harness.pass(Seconds{60});
    engine.toggle();
    harness.pass(Seconds{600});
    EXPECT_EQ(givenBack, 0) << "a paused phase goes on";
    EXPECT_FALSE(seen.expired());
    engine.toggle();
    engine.reset();
    harness.pass(Seconds{1.9});
    EXPECT_EQ(givenBack, 0);
    harness.pass(Seconds{0.2});
    EXPECT_EQ(givenBack, 1);
    EXPECT_TRUE(seen.expired()) << "the phase's pictures are gone";
    harness.pass(Seconds{3600});
    EXPECT_EQ(givenBack, 1);
}

TEST_F(AppDelegateTest, APhaseThatBeginsAtOnceKeepsTheMemoryOfTheLast) {
    finishLaunching();
    harness.pass(Seconds{2});
    ASSERT_EQ(std::exchange(givenBack, 0), 1);
    TimerEngine& engine = delegate.model().engine();
    engine.toggle();
    engine.reset();
    harness.pass(Seconds{1});
    engine.toggle();
    harness.pass(Seconds{60});
    EXPECT_EQ(givenBack, 0);
}

TEST(AppDelegate, RecoveryNoticePostsOneDataNotification) {
    for (const auto& [recovery, title] :
         {std::pair{AppModel::Recovery::complete, "Selvane restored your data"},
          std::pair{AppModel::Recovery::incomplete, "Selvane couldn't read your data"}}) {
        const std::string notice = std::string("notifications.post ") + title + ": What happened.";
        EXPECT_THAT(journalOfLaunchAfter(recovery), Contains(notice).Times(1));
    }
}

TEST_F(AppDelegateTest, SecondStartOpensThePanel) {
    finishLaunching();
    harness.journal.clear();
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(harness.journal.count("panel.show"), 1);
}

TEST_F(AppDelegateTest, SecondStartBeforeTheLaunchHasFinishedDoesNothing) {
    delegate.applicationShouldHandleReopen();
    EXPECT_FALSE(harness.journal.has("panel.show"));
}

TEST_F(AppDelegateTest, NewsOfAnUpdateChooseTheirPane) {
    finishLaunching();
    delegate.model().showWhatsNewAfterUpdate();
    EXPECT_EQ(delegate.model().windowPane(), Pane::whatsNew);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
}

/// After an update.
class UpdatedLifecycle final : public test::RecordingLifecycle {
public:
    using RecordingLifecycle::RecordingLifecycle;
    void showWhatsNewIfUpdated(AppModel& model) override {
        if (model.showWhatsNewAfterUpdate)
            model.showWhatsNewAfterUpdate();
    }
};

TEST(AppDelegate, FirstLaunchAfterAnUpdateShowsTheNews) {
    test::ModelHarness harness;
    harness.adjustServices = [&](AppServices& services) {
        services.makeDataLifecycle = [&] {
            return std::make_unique<UpdatedLifecycle>(harness.journal, harness.answers);
        };
    };
    test::FakeStatusItemHost host;
    test::FakeAppearance appearance;
    test::FakePressMonitor presses;
    test::FakeActivationMonitor activations;
    test::FakeProgramWindows programWindows;
    test::RecordingWindows windows{harness.journal};
    AppDelegate delegate(harness.environment());
    delegate.applicationDidFinishLaunching(
        {&host, &appearance, &presses, &activations, &programWindows, {}, &windows});
    EXPECT_EQ(delegate.model().windowPane(), Pane::whatsNew);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
}

TEST_F(AppDelegateTest, QuitFromTheMenuReachesTheProgram) {
    bool quits = false;
    delegate.onQuit = [&] { quits = true; };
    finishLaunching();
    EXPECT_TRUE(host.choose("Quit Selvane"));
    EXPECT_TRUE(quits);
}

} // namespace
} // namespace selvane
