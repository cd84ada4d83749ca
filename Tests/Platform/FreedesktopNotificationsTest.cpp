#include "Selvane/Platform/Linux/FreedesktopNotifications.h"

#include "FakeNotificationServer.h"
#include "Support/ManualScheduler.h"
#include "Support/PrivateBus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Notifications on a private bus whose server does what the test says.
class FreedesktopNotificationsTest : public testing::Test {
protected:
    void SetUp() override {
        _center.setCategories({{.id = "drift", .actions = {{"hide", "Hide App"}, {"snooze", "Allow 5 min"}}},
                               {.id = "bare", .actions = {}}});
        _center.onAction = [this](std::string_view request, std::string_view action) {
            _chosen.emplace_back(request, action);
        };
    }

    void haveServer() {
        _server = std::make_unique<FakeNotificationServer>(_bus);
        _server->appear();
    }

    void loseServer() {
        _server.reset();
        ASSERT_TRUE(waitUntil([&] { return !hasServer(); }));
        hear();
    }

    bool hasServer() { return hasOwner(_control, QStringLiteral("org.freedesktop.Notifications")); }

    static NotificationRequest request(const std::string& id, const std::string& title,
                                       const std::string& body = "Body", const std::string& category = "") {
        return {.id = id, .title = title, .body = body, .category = category};
    }

    bool waitForTold(std::size_t count) {
        return waitUntil([&] { return _server->told.size() >= count; });
    }

    /// Everything that the bus had for the program has arrived, and what followed from it too.
    void hear() {
        for (int round = 0; round < 4; ++round) {
            ask(_ours, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
            if (_server != nullptr)
                _server->hearAll(_ours);
        }
    }

    /// A notification with two buttons is on the screen.
    void showDrift(const std::string& id, const std::string& title) {
        if (_server == nullptr)
            haveServer();
        _center.post(request(id, title, "", "drift"));
        hear();
    }

    /// A server that was told of something before has been told of this too, and keeps its answer back.
    void postUnanswered(NotificationRequest request) {
        haveServer();
        _center.post(this->request("warm-up", "Warm-up"));
        hear();
        _server->holdsAnswers = true;
        _center.post(std::move(request));
        ASSERT_TRUE(waitForTold(2));
    }

    /// Another server takes the name over. Nothing else has run when this returns. Gives the earlier one.
    [[nodiscard]] std::unique_ptr<FakeNotificationServer> replaceServer() {
        auto earlier = std::exchange(_server, std::make_unique<FakeNotificationServer>(_bus));
        _server->appear();
        return earlier;
    }

    void remove(std::string_view id) { _center.removeDelivered(std::array<std::string_view, 1>{id}); }

    PrivateBus _bus;
    QDBusConnection _ours = _bus.connect();
    QDBusConnection _control = _bus.connect();
    ManualScheduler _scheduler;
    FreedesktopNotifications _center{_ours, _scheduler};
    std::unique_ptr<FakeNotificationServer> _server;
    std::vector<std::pair<std::string, std::string>> _chosen;
};

// What the server is told

TEST_F(FreedesktopNotificationsTest, TellsWhoSpeaksWhatAndHow) {
    haveServer();
    _center.post(request("selvane.phase-end", "Focus complete", "Nice work."));
    ASSERT_TRUE(waitForTold(1));
    const ToldNotification& told = _server->told[0];
    EXPECT_EQ(told.application, QStringLiteral("Selvane"));
    EXPECT_EQ(told.icon, QStringLiteral("com.lorbin.selvane"));
    EXPECT_EQ(told.replacedID, 0U);
    EXPECT_EQ(told.summary, QStringLiteral("Focus complete"));
    EXPECT_EQ(told.body, QStringLiteral("Nice work."));
    EXPECT_EQ(told.actions, QStringList());
    EXPECT_EQ(told.expiry, -1);
    EXPECT_EQ(told.hints,
              (QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("com.lorbin.selvane")},
                           {QStringLiteral("urgency"), QVariant::fromValue<uchar>(1)},
                           {QStringLiteral("category"), QStringLiteral("x-selvane.phase-end")},
                           {QStringLiteral("suppress-sound"), true}}));
    EXPECT_EQ(told.hints.value(QStringLiteral("urgency")).metaType(), QMetaType::fromType<uchar>());
}

TEST_F(FreedesktopNotificationsTest, OffersTheActionsOfTheCategoryInTheirOrder) {
    haveServer();
    _center.post(request("a", "A", "", "drift"));
    _center.post(request("b", "B", "", "bare"));
    _center.post(request("c", "C", "", "unknown"));
    ASSERT_TRUE(waitForTold(3));
    EXPECT_EQ(_server->told[0].actions,
              QStringList({QStringLiteral("hide"), QStringLiteral("Hide App"), QStringLiteral("snooze"),
                           QStringLiteral("Allow 5 min")}));
    EXPECT_EQ(_server->told[1].actions, QStringList());
    EXPECT_EQ(_server->told[2].actions, QStringList());
}

TEST_F(FreedesktopNotificationsTest, OffersNoActionsToAServerThatHasNone) {
    haveServer();
    _server->capabilities = QStringList{QStringLiteral("body")};
    _center.post(request("a", "A", "", "drift"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].actions, QStringList());
}

TEST_F(FreedesktopNotificationsTest, EscapesTheBodyAloneAndOnlyForAServerThatReadsMarkup) {
    haveServer();
    const std::string text = "<b>R&D</b> says \"hi\" & 'bye' \xC3\xA9";
    _center.post(request("a", text, text));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QString::fromStdString(text));
    EXPECT_EQ(_server->told[0].body,
              QString::fromUtf8("&lt;b&gt;R&amp;D&lt;/b&gt; says \"hi\" &amp; 'bye' \xC3\xA9"));

    loseServer();
    haveServer();
    _server->capabilities = QStringList{QStringLiteral("actions"), QStringLiteral("body")};
    _center.post(request("a", text, text));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].body, QString::fromStdString(text));
}

TEST_F(FreedesktopNotificationsTest, SendsTextThatIsNoUTF8AsWell) {
    haveServer();
    _center.post(request("a", "Hid \xFF\xFE", "\xC3"));
    _center.post(request("b", "B"));
    ASSERT_TRUE(waitForTold(2));
    EXPECT_TRUE(_server->told[0].summary.startsWith(QStringLiteral("Hid ")));
}

// One of each kind

TEST_F(FreedesktopNotificationsTest, ReplacesByTheNumberThatTheServerGave) {
    haveServer();
    _center.post(request("other", "Other"));
    hear();
    _center.post(request("a", "First"));
    hear();
    _center.post(request("a", "Second"));
    ASSERT_TRUE(waitForTold(3));
    EXPECT_EQ(_server->told[2].replacedID, _server->told[1].id);
    EXPECT_THAT(_server->shown,
                ElementsAre(Pair(1U, QStringLiteral("Other")), Pair(2U, QStringLiteral("Second"))));
}

TEST_F(FreedesktopNotificationsTest, FollowsAServerThatGivesNewNumbers) {
    haveServer();
    _server->givesNewNumbers = true;
    for (const char* title : {"First", "Second", "Third"}) {
        _center.post(request("a", title));
        hear();
    }
    ASSERT_EQ(_server->told.size(), 3U);
    EXPECT_EQ(_server->told[2].replacedID, 2U);
    EXPECT_THAT(_server->shown, ElementsAre(Pair(3U, QStringLiteral("Third"))));
}

TEST_F(FreedesktopNotificationsTest, WaitsForTheNumberBeforeItReplacesAndThenTellsOnlyTheNewest) {
    postUnanswered(request("a", "First"));
    _center.post(request("a", "Second"));
    _center.post(request("a", "Third"));
    hear();
    EXPECT_EQ(_server->told.size(), 2U);
    _server->holdsAnswers = false;
    _server->answerHeld();
    ASSERT_TRUE(waitForTold(3));
    hear();
    EXPECT_EQ(_server->told.size(), 3U);
    EXPECT_EQ(_server->told[2].summary, QStringLiteral("Third"));
    EXPECT_EQ(_server->told[2].replacedID, _server->told[1].id);
}

TEST_F(FreedesktopNotificationsTest, DoesNotBelieveThatAClosedOneIsGone) {
    showDrift("a", "First");
    _server->tellClosed(1);
    hear();
    // Some tell of the end first and of the press that led to it afterwards.
    _server->press(1, QStringLiteral("hide"));
    EXPECT_TRUE(waitUntil([&] { return !_chosen.empty(); }));
    EXPECT_THAT(_chosen, ElementsAre(Pair("a", "hide")));
}

// Taking down

TEST_F(FreedesktopNotificationsTest, ClosesWhatIsTakenDown) {
    haveServer();
    _center.post(request("a", "A"));
    _center.post(request("b", "B"));
    hear();
    remove("a");
    remove("a");
    remove("unknown");
    hear();
    EXPECT_THAT(_server->closed, ElementsAre(1U));
    _center.post(request("a", "Again"));
    ASSERT_TRUE(waitForTold(3));
    EXPECT_EQ(_server->told[2].replacedID, 0U);
}

TEST_F(FreedesktopNotificationsTest, ClosesWhatIsTakenDownBeforeItsNumberCame) {
    postUnanswered(request("a", "A"));
    remove("a");
    hear();
    EXPECT_THAT(_server->closed, IsEmpty());
    _server->answerHeld();
    ASSERT_TRUE(waitUntil([&] { return !_server->closed.empty(); }));
    EXPECT_THAT(_server->closed, ElementsAre(2U));
}

TEST_F(FreedesktopNotificationsTest, WhatIsPostedAgainAfterItWasTakenDownStays) {
    postUnanswered(request("a", "First"));
    remove("a");
    _center.post(request("a", "Second"));
    _server->holdsAnswers = false;
    _server->answerHeld();
    ASSERT_TRUE(waitForTold(3));
    hear();
    EXPECT_THAT(_server->shown,
                ElementsAre(Pair(1U, QStringLiteral("Warm-up")), Pair(2U, QStringLiteral("Second"))));
}

TEST_F(FreedesktopNotificationsTest, WhatIsTakenDownBeforeTheServerWasAskedIsNeverTold) {
    haveServer();
    _server->holdsAnswers = true;
    _center.post(request("a", "A"));
    ASSERT_TRUE(waitUntil([&] { return _server->questions == 1; }));
    remove("a");
    _center.post(request("b", "B"));
    _server->holdsAnswers = false;
    _server->answerHeld();
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("B"));
}

// Answers of the user

TEST_F(FreedesktopNotificationsTest, TellsWhichButtonOfWhichWasChosenAndClosesIt) {
    showDrift("a", "A");
    showDrift("b", "B");
    _server->press(2, QStringLiteral("snooze"));
    ASSERT_TRUE(waitUntil([&] { return !_server->closed.empty(); }));
    EXPECT_THAT(_chosen, ElementsAre(Pair("b", "snooze")));
    EXPECT_THAT(_server->closed, ElementsAre(2U));
    // A second press of what is gone is for nobody.
    _server->press(2, QStringLiteral("snooze"));
    hear();
    EXPECT_EQ(_chosen.size(), 1U);
}

TEST_F(FreedesktopNotificationsTest, BearsAServerThatHasClosedItAlready) {
    showDrift("a", "A");
    _server->shown.clear();
    _server->press(1, QStringLiteral("hide"));
    ASSERT_TRUE(waitUntil([&] { return !_server->closed.empty(); }));
    hear();
    _center.post(request("a", "Again"));
    EXPECT_TRUE(waitForTold(2));
}

TEST_F(FreedesktopNotificationsTest, IgnoresPressesOnTheNotificationsOfOthers) {
    showDrift("a", "A");
    _server->press(0, QStringLiteral("hide"));
    _server->press(7, QStringLiteral("hide"));
    hear();
    EXPECT_THAT(_chosen, IsEmpty());
    EXPECT_THAT(_server->closed, IsEmpty());
}

TEST_F(FreedesktopNotificationsTest, IgnoresPressesThatAnotherThanTheServerTells) {
    showDrift("a", "A");
    FakeNotificationServer impostor(_bus);
    impostor.press(1, QStringLiteral("hide"));
    impostor.hearAll(_ours);
    hear();
    EXPECT_THAT(_chosen, IsEmpty());
    _server->press(1, QStringLiteral("hide"));
    EXPECT_TRUE(waitUntil([&] { return !_chosen.empty(); }));
}

TEST_F(FreedesktopNotificationsTest, PressOnWhatIsJustBeingReplacedDoesNotCloseWhatComes) {
    showDrift("a", "First");
    _server->holdsAnswers = true;
    _center.post(request("a", "Second", "", "drift"));
    ASSERT_TRUE(waitForTold(2));
    _server->press(1, QStringLiteral("hide"));
    ASSERT_TRUE(waitUntil([&] { return !_chosen.empty(); }));
    _server->answerHeld();
    hear();
    EXPECT_THAT(_server->closed, IsEmpty());
    _server->press(1, QStringLiteral("snooze"));
    EXPECT_TRUE(waitUntil([&] { return _chosen.size() == 2; }));
}

// Servers come and go

TEST_F(FreedesktopNotificationsTest, AsksNothingBeforeThereIsSomethingToShow) {
    haveServer();
    _center.requestAuthorization();
    _center.postLater(request("a", "A"), Seconds{10});
    _center.removePending(std::array<std::string_view, 1>{"a"});
    remove("a");
    hear();
    EXPECT_EQ(_server->questions, 0);
    EXPECT_THAT(_server->told, IsEmpty());
    EXPECT_THAT(_server->closed, IsEmpty());
}

TEST_F(FreedesktopNotificationsTest, AsksAServerOnceForWhatItCanDo) {
    haveServer();
    for (const char* id : {"a", "b", "a"}) {
        _center.post(request(id, "Title"));
        hear();
    }
    EXPECT_EQ(_server->questions, 1);
}

TEST_F(FreedesktopNotificationsTest, WithoutAServerNothingHappensAndALaterOneIsUsed) {
    _center.post(request("a", "Lost"));
    hear();
    remove("a");
    _center.post(request("a", "Lost too"));
    hear();
    haveServer();
    hear();
    EXPECT_EQ(_server->questions, 0);
    _center.post(request("a", "Found"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("Found"));
    EXPECT_EQ(_server->told.size(), 1U);
}

TEST_F(FreedesktopNotificationsTest, NewServerHearsNoNumbersOfTheOldAndIsAskedAgain) {
    haveServer();
    _center.post(request("a", "First", "", "drift"));
    _center.post(request("b", "B"));
    hear();
    loseServer();
    haveServer();
    _server->capabilities = QStringList{QStringLiteral("body")};
    // Such a number may mean another one's notification now.
    remove("b");
    _server->press(1, QStringLiteral("hide"));
    hear();
    EXPECT_THAT(_server->closed, IsEmpty());
    EXPECT_THAT(_chosen, IsEmpty());
    _center.post(request("a", "Second", "", "drift"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->questions, 1);
    EXPECT_EQ(_server->told[0].replacedID, 0U);
    EXPECT_EQ(_server->told[0].actions, QStringList());
}

TEST_F(FreedesktopNotificationsTest, ServerThatDiesWhileItIsToldLeavesNothingBehind) {
    postUnanswered(request("a", "A"));
    loseServer();
    haveServer();
    _center.post(request("a", "Again"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].replacedID, 0U);
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("Again"));
    hear();
    EXPECT_EQ(_server->told.size(), 1U);
}

TEST_F(FreedesktopNotificationsTest, WhatAReplacedServerTookWithItUnansweredIsToldToTheNext) {
    postUnanswered(request("a", "A"));
    replaceServer().reset();
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("A"));
    EXPECT_EQ(_server->told[0].replacedID, 0U);
    hear();
    EXPECT_EQ(_server->told.size(), 1U);
    remove("a");
    ASSERT_TRUE(waitUntil([&] { return !_server->closed.empty(); }));
    EXPECT_THAT(_server->closed, ElementsAre(_server->told[0].id));
}

TEST_F(FreedesktopNotificationsTest, WhatAServerAnswersAfterItWasReplacedIsToldToTheNext) {
    postUnanswered(request("a", "A"));
    const auto earlier = replaceServer();
    hear();
    EXPECT_THAT(_server->told, IsEmpty());
    earlier->answerHeld();
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("A"));
    EXPECT_EQ(_server->told[0].replacedID, 0U);
}

TEST_F(FreedesktopNotificationsTest, WhatReachedTheNextServerAlreadyIsNotToldAgain) {
    haveServer();
    _center.post(request("warm-up", "Warm-up"));
    hear();
    const auto earlier = replaceServer();
    _center.post(request("a", "A", "", "drift"));
    hear();
    ASSERT_EQ(_server->told.size(), 1U);
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("A"));
    _server->press(_server->told[0].id, QStringLiteral("hide"));
    ASSERT_TRUE(waitUntil([&] { return !_chosen.empty(); }));
    EXPECT_THAT(_chosen, ElementsAre(Pair("a", "hide")));
}

TEST_F(FreedesktopNotificationsTest, OfWhatAReplacedServerWasToldTheNextHearsOnlyTheNewest) {
    postUnanswered(request("a", "First"));
    _center.post(request("a", "Second"));
    replaceServer().reset();
    ASSERT_TRUE(waitForTold(1));
    hear();
    EXPECT_EQ(_server->told.size(), 1U);
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("Second"));
}

TEST_F(FreedesktopNotificationsTest, WhatWasTakenDownIsNotToldToTheNextServer) {
    postUnanswered(request("a", "A"));
    remove("a");
    replaceServer().reset();
    hear();
    _center.post(request("b", "B"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("B"));
}

TEST_F(FreedesktopNotificationsTest, NextServerThatRefusesWhatTheEarlierWasToldIsNotAskedForEver) {
    postUnanswered(request("a", "A"));
    const auto earlier = replaceServer();
    _server->refusesToShow = true;
    earlier->answerHeld();
    hear();
    _server->refusesToShow = false;
    hear();
    EXPECT_THAT(_server->told, IsEmpty());
}

TEST_F(FreedesktopNotificationsTest, ServerThatDiesWhileItIsAskedIsNotStartedAgain) {
    haveServer();
    _server->holdsAnswers = true;
    _center.post(request("a", "Lost"));
    ASSERT_TRUE(waitUntil([&] { return _server->questions == 1; }));
    loseServer();
    haveServer();
    hear();
    EXPECT_EQ(_server->questions, 0);
    _center.post(request("b", "B"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("B"));
}

TEST_F(FreedesktopNotificationsTest, ServerThatRefusesOneIsToldTheNext) {
    haveServer();
    _server->refusesToShow = true;
    _center.post(request("a", "Refused"));
    hear();
    _server->refusesToShow = false;
    remove("a");
    _center.post(request("a", "A"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].replacedID, 0U);
    EXPECT_THAT(_server->closed, IsEmpty());
}

TEST_F(FreedesktopNotificationsTest, ServerThatCannotTellWhatItCanDoIsAskedAgainTheNextTime) {
    haveServer();
    _server->refusesToTellCapabilities = true;
    _center.post(request("a", "Lost"));
    hear();
    EXPECT_THAT(_server->told, IsEmpty());
    _server->refusesToTellCapabilities = false;
    _center.post(request("a", "A"));
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("A"));
}

TEST_F(FreedesktopNotificationsTest, PendingOneOutlivesAChangeOfServers) {
    haveServer();
    _center.postLater(request("a", "A"), Seconds{60});
    _scheduler.advance(Seconds{30});
    loseServer();
    haveServer();
    _scheduler.advance(Seconds{30});
    ASSERT_TRUE(waitForTold(1));
    EXPECT_EQ(_server->told[0].summary, QStringLiteral("A"));
}

TEST_F(FreedesktopNotificationsTest, MayEndWithAnswersAndMomentsUnderWay) {
    haveServer();
    _server->holdsAnswers = true;
    {
        FreedesktopNotifications center(_ours, _scheduler);
        center.post(request("a", "A"));
        center.postLater(request("b", "B"), Seconds{1});
        ASSERT_TRUE(waitUntil([&] { return _server->questions == 1; }));
    }
    _server->answerHeld();
    _scheduler.advance(Seconds{2});
    hear();
    EXPECT_THAT(_server->told, IsEmpty());
}

TEST(FreedesktopNotificationsWithoutABus, NothingHappens) {
    ManualScheduler scheduler;
    FreedesktopNotifications center(QDBusConnection(QStringLiteral("there is no such connection")),
                                    scheduler);
    center.setCategories({});
    center.requestAuthorization();
    center.post({.id = "a", .title = "A", .body = "", .category = ""});
    center.postLater({.id = "b", .title = "B", .body = "", .category = ""}, Seconds{1});
    scheduler.advance(Seconds{2});
    center.removePending(std::array<std::string_view, 1>{"b"});
    center.removeDelivered(std::array<std::string_view, 1>{"a"});
    QCoreApplication::processEvents();
}

} // namespace
} // namespace selvane::test
