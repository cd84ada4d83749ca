#include "Selvane/UI/StatusItemController.h"

#include "Support/FakeActivationMonitor.h"
#include "Support/FakePanel.h"
#include "Support/FakePressMonitor.h"
#include "Support/FakeProgramWindows.h"
#include "Support/FakeStatusItemHost.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

namespace selvane {
namespace {

using testing::ElementsAre;

class StatusItemControllerTest : public testing::Test {
protected:
    StatusItemControllerTest()
        : controller(std::in_place, harness.launch(),
                     StatusItemController::Desktop{&host, &harness.scheduler, &presses, &activations,
                                                   &programWindows, &windows},
                     [this]() -> std::unique_ptr<Panel> {
                         ++panelsMade;
                         if (!viewsLoad)
                             return nullptr;
                         auto made = std::make_unique<test::FakePanel>(harness.journal);
                         panel = made.get();
                         return made;
                     }) {
        harness.scheduler.turn();
        harness.journal.clear();
    }

    TimerEngine& engine() { return harness.model().engine(); }

    test::ModelHarness harness;
    test::FakeStatusItemHost host;
    test::FakePressMonitor presses;
    test::FakeActivationMonitor activations;
    test::FakeProgramWindows programWindows;
    test::RecordingWindows windows{harness.journal};
    bool viewsLoad = true;
    int panelsMade = 0;
    test::FakePanel* panel = nullptr;
    std::optional<StatusItemController> controller;
};

// The item

TEST_F(StatusItemControllerTest, ItemIsCompleteAtOnce) {
    ASSERT_TRUE(host.content());
    EXPECT_TRUE(host.content()->image);
    EXPECT_EQ(host.accessibilityLabel(), "Selvane");
    EXPECT_EQ(host.menu().size(), 7U);
}

TEST_F(StatusItemControllerTest, ItemFollowsTheModelAfterTheBurstOfChanges) {
    engine().start();
    EXPECT_EQ(host.content()->title, std::nullopt) << "not from inside the command";
    harness.scheduler.turn();
    EXPECT_EQ(host.content()->title, "25:00");
    EXPECT_EQ(host.accessibilityLabel(), "Selvane, Focus, 25:00 remaining");
    const std::string tooltip = host.tooltip();
    EXPECT_THAT(tooltip, testing::StartsWith("Selvane, Focus, ends "));
    harness.pass(Seconds{1});
    EXPECT_EQ(host.tooltip(), tooltip) << "panels are not woken every second";
    EXPECT_EQ(host.content()->title, "24:59");
}

TEST_F(StatusItemControllerTest, EqualContentIsNotDrawnAgain) {
    harness.model().settings().menuBarDisplay.set(MenuBarDisplay::iconOnly);
    engine().start();
    harness.scheduler.turn();
    const int drawn = host.drawings();
    harness.pass(Seconds{6});
    EXPECT_EQ(host.drawings(), drawn) << "less than a half step of the dial";
    EXPECT_EQ(host.accessibilityLabel(), "Selvane, Focus, 24:54 remaining") << "the words move all the same";
    harness.pass(Seconds{1});
    EXPECT_EQ(host.drawings(), drawn + 1);
}

TEST_F(StatusItemControllerTest, ItemFollowsTheDisplaySetting) {
    engine().start();
    harness.model().settings().menuBarDisplay.set(MenuBarDisplay::timeOnly);
    harness.scheduler.turn();
    EXPECT_FALSE(host.content()->image);
}

TEST_F(StatusItemControllerTest, ItemFollowsADrift) {
    engine().start();
    harness.scheduler.turn();
    const auto before = host.content()->image;
    harness.answers.driftAppName = "Chat";
    harness.model().focusGuard().changed.emit();
    harness.scheduler.turn();
    EXPECT_NE(host.content()->image, before);
}

TEST_F(StatusItemControllerTest, MiddleClickTogglesTheTimer) {
    host.middleClick();
    EXPECT_TRUE(engine().isRunning());
    host.middleClick();
    EXPECT_TRUE(engine().isPaused());
    host.middleClick();
    EXPECT_TRUE(engine().isRunning()) << "resumed";
    EXPECT_EQ(panelsMade, 0);
}

TEST_F(StatusItemControllerTest, MenuDrivesTheTimer) {
    EXPECT_TRUE(host.choose("Start"));
    harness.scheduler.turn();
    EXPECT_TRUE(engine().isRunning());
    EXPECT_TRUE(host.choose("Pause"));
    harness.scheduler.turn();
    EXPECT_TRUE(engine().isPaused());
    EXPECT_TRUE(host.choose("Resume"));
    harness.scheduler.turn();
    EXPECT_TRUE(host.choose("Reset"));
    harness.scheduler.turn();
    EXPECT_TRUE(engine().isIdle());
    EXPECT_TRUE(host.choose("Skip"));
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
}

TEST_F(StatusItemControllerTest, ResetOfTheMenuLeavesTheMusicPlaying) {
    engine().start();
    harness.scheduler.turn();
    harness.journal.clear();
    EXPECT_TRUE(host.choose("Reset"));
    EXPECT_FALSE(harness.journal.has("music.pause"));
}

TEST_F(StatusItemControllerTest, MenuOpensThePanelAndQuits) {
    bool quits = false;
    controller->onQuit = [&] { quits = true; };
    EXPECT_TRUE(host.choose("Open Selvane"));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(host.choose("Quit Selvane"));
    EXPECT_TRUE(quits);
}

TEST_F(StatusItemControllerTest, PicturesOfAPhaseAreKeptUntilItIsOver) {
    engine().toggle();
    harness.scheduler.turn();
    const std::weak_ptr<const TemplateImage> first = host.content()->image;
    harness.pass(Seconds{120});
    controller->giveBackMemory();
    EXPECT_FALSE(first.expired());
    engine().reset();
    harness.scheduler.turn();
    const auto drawings = host.drawings();
    controller->giveBackMemory();
    EXPECT_TRUE(first.expired());
    harness.pass(Seconds{120});
    EXPECT_EQ(host.drawings(), drawings) << "the picture that is shown stays";
}

// The panel

TEST_F(StatusItemControllerTest, PanelIsMadeAtTheFirstOpeningAndKept) {
    EXPECT_EQ(panelsMade, 0);
    host.click();
    host.click();
    host.click();
    EXPECT_EQ(panelsMade, 1);
}

TEST_F(StatusItemControllerTest, OpeningBringsTheModelUpToDateBeforeThePanelShows) {
    host.click();
    EXPECT_THAT(harness.journal.entries(),
                ElementsAre("lifecycle.backUpDaily", "calendar.refresh", "panel.show"));
}

TEST_F(StatusItemControllerTest, ClickOnTheItemClosesAnOpenPanel) {
    host.click();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(host.isHighlighted());
    host.click();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(host.isHighlighted());
}

TEST_F(StatusItemControllerTest, EscapeClosesThePanelAndRemovesTheHighlight) {
    host.click();
    panel->pressEscape();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(host.isHighlighted());
    host.click();
    EXPECT_TRUE(panel->isVisible()) << "a click right after Escape means open";
}

TEST_F(StatusItemControllerTest, ClickThatTookTheKeyboardDoesNotReopenThePanel) {
    host.click();
    panel->turnAway();
    EXPECT_FALSE(panel->isVisible());
    harness.scheduler.advance(Seconds{0.19});
    host.click();
    EXPECT_FALSE(panel->isVisible());
    host.click();
    EXPECT_TRUE(panel->isVisible()) << "the guard takes one click";
}

TEST_F(StatusItemControllerTest, PressOutsideClosesThePanel) {
    host.click();
    presses.press();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(host.isHighlighted());
}

TEST_F(StatusItemControllerTest, PressOnTheItemItselfClosesAndDoesNotReopen) {
    host.click();
    presses.press();
    host.click();
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, ClickThatComesWithALateReleaseDoesNotReopen) {
    host.click();
    presses.press();
    harness.scheduler.advance(Seconds{3});
    presses.release();
    harness.scheduler.advance(Seconds{0.1});
    host.click();
    EXPECT_FALSE(panel->isVisible());
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, ClickThatComesWhileTheButtonIsDownDoesNotReopen) {
    host.click();
    presses.press();
    harness.scheduler.advance(Seconds{3});
    host.click();
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, LaterClickAfterAPressElsewhereOpens) {
    host.click();
    presses.press();
    presses.release();
    harness.scheduler.advance(Seconds{0.2});
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, ReleaseOfTheClickThatOpenedThePanelIsNothing) {
    host.click();
    presses.release();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(presses.watchers(), 1);
}

TEST_F(StatusItemControllerTest, PressesAreWatchedOnceAndOnlyWhileThePanelIsOpen) {
    EXPECT_EQ(presses.watchers(), 0);
    host.click();
    controller->open();
    EXPECT_EQ(presses.watchers(), 1);
    panel->pressEscape();
    EXPECT_EQ(presses.watchers(), 0);
    host.click();
    presses.press();
    EXPECT_EQ(presses.watchers(), 1) << "for the release";
    presses.release();
    EXPECT_EQ(presses.watchers(), 0);
}

TEST_F(StatusItemControllerTest, ClickLongAfterTurningAwayOpensThePanel) {
    host.click();
    panel->turnAway();
    harness.scheduler.advance(Seconds{0.2});
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, CloseOfAHiddenPanelDoesNothing) {
    controller->close();
    host.click();
    panel->pressEscape();
    harness.journal.clear();
    controller->close();
    EXPECT_TRUE(harness.journal.entries().empty());
}

// Other applications

TEST_F(StatusItemControllerTest, ActivationOfAnotherApplicationClosesThePanel) {
    host.click();
    activations.activateOtherApplication();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(host.isHighlighted());
}

TEST_F(StatusItemControllerTest, ActivationsAreWatchedOnceAndOnlyWhileThePanelIsOpen) {
    EXPECT_EQ(activations.watchers(), 0);
    host.click();
    controller->open();
    EXPECT_EQ(activations.watchers(), 1);
    presses.press();
    EXPECT_EQ(activations.watchers(), 0) << "also while the release is still waited for";
    host.click();
    host.click();
    EXPECT_EQ(activations.watchers(), 1);
    activations.activateOtherApplication();
    EXPECT_EQ(activations.watchers(), 0);
}

TEST_F(StatusItemControllerTest, PanelOpenedOnceMoreWhileItIsOpenGoesOnWatching) {
    host.click();
    controller->open();
    EXPECT_EQ(activations.watches(), 1) << "a new watch wouldn't know that the panel has been active";
    panel->pressEscape();
    host.click();
    EXPECT_EQ(activations.watches(), 2);
}

TEST_F(StatusItemControllerTest, ClickThatActivatedTheTrayDoesNotReopenThePanel) {
    host.click();
    activations.activateOtherApplication();
    host.click();
    EXPECT_FALSE(panel->isVisible());
    harness.scheduler.advance(Seconds{0.2});
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

// The level

TEST_F(StatusItemControllerTest, PanelIsNormalWhileTheMainWindowHasTheKeyboard) {
    host.click();
    EXPECT_EQ(panel->level(), PanelLevel::floating);
    programWindows.giveKeyboardTo(ProgramWindow::main);
    EXPECT_EQ(panel->level(), PanelLevel::normal);
    programWindows.giveKeyboardTo(ProgramWindow::panel);
    EXPECT_EQ(panel->level(), PanelLevel::floating);
}

TEST_F(StatusItemControllerTest, PanelFloatsAgainWhenTheMainWindowCloses) {
    host.click();
    programWindows.giveKeyboardTo(ProgramWindow::main);
    programWindows.close(ProgramWindow::main);
    EXPECT_EQ(panel->level(), PanelLevel::floating);
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, MainWindowThatClosesGivesTheKeyboardToThePanelIfItIsOpen) {
    host.click();
    programWindows.close(ProgramWindow::other);
    EXPECT_EQ(harness.journal.count("panel.activate"), 0) << "a dialog gives it back to its parent";
    programWindows.close(ProgramWindow::main);
    EXPECT_EQ(harness.journal.count("panel.activate"), 1);
    controller->close();
    programWindows.close(ProgramWindow::main);
    EXPECT_EQ(harness.journal.count("panel.activate"), 1);
}

TEST_F(StatusItemControllerTest, PanelThatTheWindowManagerClosesIsClosedWholly) {
    host.click();
    panel->vanish();
    EXPECT_EQ(harness.journal.count("panel.hide"), 1);
    EXPECT_FALSE(host.isHighlighted());
    EXPECT_EQ(presses.watchers(), 0);
    EXPECT_EQ(activations.watchers(), 0);
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(StatusItemControllerTest, LevelIsSetOnlyIfItDiffers) {
    programWindows.giveKeyboardTo(ProgramWindow::main);
    host.click();
    harness.journal.clear();
    programWindows.giveKeyboardTo(ProgramWindow::panel);
    programWindows.giveKeyboardTo(std::nullopt);
    programWindows.giveKeyboardTo(ProgramWindow::other);
    programWindows.giveKeyboardTo(ProgramWindow::main);
    programWindows.giveKeyboardTo(ProgramWindow::main);
    EXPECT_THAT(harness.journal.entries(), ElementsAre("panel.normal"));
}

TEST_F(StatusItemControllerTest, PanelThatOpensFloatsWhateverHasTheKeyboard) {
    host.click();
    programWindows.giveKeyboardTo(ProgramWindow::main);
    controller->close();
    harness.journal.clear();
    host.click();
    EXPECT_THAT(harness.journal.entries(),
                ElementsAre("lifecycle.backUpDaily", "calendar.refresh", "panel.floating", "panel.show"));
}

// What the main window is told

TEST_F(StatusItemControllerTest, FrameOfThePanelIsToldWhileItIsOpen) {
    EXPECT_EQ(windows.popoverFrame(), std::nullopt);
    host.click();
    EXPECT_EQ(windows.popoverFrame(), panel->place);
    host.click();
    EXPECT_EQ(windows.popoverFrame(), std::nullopt);
}

TEST_F(StatusItemControllerTest, FrameIsNotToldAfterTheEnd) {
    host.click();
    controller.reset();
    EXPECT_EQ(windows.popoverFrame(), std::nullopt);
}

// The place

TEST_F(StatusItemControllerTest, PanelStandsWhereTheClickWas) {
    const StatusItemAnchor anchor{ScreenRect{600, 0, 24, 24}, ScreenPoint{612, 12}};
    host.place(anchor);
    host.click();
    EXPECT_EQ(panel->anchor(), anchor);
}

TEST_F(StatusItemControllerTest, OpensWithoutAPlaceForTheItem) {
    controller->open();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->anchor(), StatusItemAnchor{});
}

TEST_F(StatusItemControllerTest, ViewsThatDoNotLoadAreTriedAgain) {
    viewsLoad = false;
    host.click();
    EXPECT_FALSE(host.isHighlighted());
    viewsLoad = true;
    host.click();
    EXPECT_TRUE(panel->isVisible());
}

} // namespace
} // namespace selvane
