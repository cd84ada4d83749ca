#include "Selvane/Platform/NotificationCenter.h"

#include "FakeNotificationServer.h"
#include "Selvane/Platform/Linux/FreedesktopNotifications.h"
#include "Support/EndWithTest.h"
#include "Support/FakeNotificationCenter.h"
#include "Support/ManualScheduler.h"
#include "Support/PrivateBus.h"
#include "Support/XServer.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusVariant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const auto serverName = QStringLiteral("org.freedesktop.Notifications");
const auto serverPath = QStringLiteral("/org/freedesktop/Notifications");

/// A center together with the screen that its notifications are on and the user before it.
class Screen {
public:
    virtual ~Screen() = default;
    virtual NotificationCenter& center() = 0;
    /// How many notifications are on the screen.
    virtual std::size_t count() = 0;
    /// The user dismisses all of them. The titles of those that were dismissed.
    virtual std::vector<std::string> dismissAll() = 0;
    /// The user presses the only button of the only notification.
    virtual void press() = 0;

    ManualScheduler scheduler;
};

class FakeScreen final : public Screen {
public:
    NotificationCenter& center() override { return _center; }
    std::size_t count() override { return _center.shown.size(); }
    std::vector<std::string> dismissAll() override {
        std::vector<std::string> titles;
        for (const NotificationRequest& request : std::exchange(_center.shown, {}))
            titles.push_back(request.title);
        return titles;
    }
    void press() override {
        const NotificationRequest request = _center.shown.at(0);
        for (const NotificationCategory& category : _center.categories()) {
            if (category.id == request.category)
                _center.choose(request.id, category.actions.at(0).id);
        }
    }

private:
    FakeNotificationCenter _center{scheduler};
};

/// The real center on a private bus, before a server that only remembers.
class PlainServerScreen final : public Screen {
public:
    PlainServerScreen() { _server.appear(); }
    NotificationCenter& center() override { return _center; }
    std::size_t count() override { return _server.shown.size(); }
    std::vector<std::string> dismissAll() override {
        std::vector<std::string> titles;
        for (const auto& [id, title] : std::exchange(_server.shown, {}))
            titles.push_back(title.toStdString());
        return titles;
    }
    void press() override {
        const ToldNotification& told = _server.told.back();
        _server.press(told.id, told.actions.value(0));
    }

private:
    PrivateBus _bus;
    FakeNotificationServer _server{_bus};
    FreedesktopNotifications _center{_bus.connect(), scheduler};
};

/// The real center before a real server.
class DunstScreen final : public Screen {
public:
    DunstScreen() {
        // What is on the screen stays there, so that what shouldn't be is seen.
        QDir(_home.path()).mkpath(QStringLiteral(".config/dunst"));
        QFile settings(_home.filePath(QStringLiteral(".config/dunst/dunstrc")));
        if (settings.open(QIODevice::WriteOnly))
            settings.write("[urgency_normal]\n    timeout = 0\n");
        settings.close();
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
        environment.insert(QStringLiteral("HOME"), _home.path());
        environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(_screen.display()));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), _bus.address());
        _dunst.setProcessEnvironment(environment);
        _dunst.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        endWithTest(_dunst);
        _dunst.start(QStringLiteral("dunst"));
        waitUntil([&] { return hasOwner(_control, serverName); });
    }

    ~DunstScreen() override {
        _dunst.kill();
        _dunst.waitForFinished();
    }

    NotificationCenter& center() override { return _center; }

    std::size_t count() override {
        const QDBusMessage reply =
            ask(_control, serverName, serverPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                QStringLiteral("Get"), {control(), QStringLiteral("displayedLength")});
        return reply.arguments().value(0).value<QDBusVariant>().variant().toUInt();
    }

    std::vector<std::string> dismissAll() override {
        ask(_control, serverName, serverPath, control(), QStringLiteral("NotificationCloseAll"));
        const QDBusMessage reply =
            ask(_control, serverName, serverPath, control(), QStringLiteral("NotificationListHistory"));
        std::vector<std::string> titles;
        for (const QVariantMap& notification :
             qdbus_cast<QList<QVariantMap>>(reply.arguments().value(0).value<QDBusArgument>()))
            titles.push_back(notification.value(QStringLiteral("summary")).toString().toStdString());
        return titles;
    }

    void press() override {
        ask(_control, serverName, serverPath, control(), QStringLiteral("NotificationAction"), {0U});
    }

private:
    static QString control() { return QStringLiteral("org.dunstproject.cmd0"); }

    QTemporaryDir _home;
    XServer _screen;
    PrivateBus _bus;
    QDBusConnection _control = _bus.connect();
    QProcess _dunst;
    FreedesktopNotifications _center{_bus.connect(), scheduler};
};

struct Kind {
    std::string name;
    std::function<std::unique_ptr<Screen>()> make;
};

void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

class NotificationCenterContract : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override {
        _screen->center().setCategories({{.id = "drift", .actions = {{"snooze", "Allow 5 min"}}}});
        _screen->center().onAction = [this](std::string_view request, std::string_view action) {
            _chosen.emplace_back(request, action);
        };
    }

    NotificationCenter& center() { return _screen->center(); }
    ManualScheduler& scheduler() { return _screen->scheduler; }

    static NotificationRequest request(const std::string& id, const std::string& title,
                                       const std::string& category = "") {
        return {.id = id, .title = title, .body = "Body", .category = category};
    }

    void removePending(std::string_view id) { center().removePending(std::array<std::string_view, 1>{id}); }
    void removeDelivered(std::string_view id) {
        center().removeDelivered(std::array<std::string_view, 1>{id});
    }

    bool shows(std::size_t count) {
        return waitUntil([&] { return _screen->count() == count; });
    }

    /// That nothing more comes is known when something posted later has come and gone.
    bool showsOnly(std::size_t count) {
        center().post(request("last", "Last"));
        if (!shows(count + 1))
            return false;
        removeDelivered("last");
        return shows(count);
    }

    /// The titles of what is on the screen, which is empty then.
    std::vector<std::string> titles() {
        std::vector<std::string> all = _screen->dismissAll();
        std::erase(all, "Last");
        return all;
    }

    std::unique_ptr<Screen> _screen = GetParam().make();
    std::vector<std::pair<std::string, std::string>> _chosen;
};

TEST_P(NotificationCenterContract, PostShowsAtOnce) {
    center().post(request("a", "A"));
    ASSERT_TRUE(shows(1));
    EXPECT_THAT(titles(), ElementsAre("A"));
}

TEST_P(NotificationCenterContract, NewerTakesThePlaceOfTheOlderOfTheSameIdentifier) {
    center().post(request("a", "First"));
    ASSERT_TRUE(shows(1));
    center().post(request("a", "Second"));
    ASSERT_TRUE(showsOnly(1));
    EXPECT_THAT(titles(), ElementsAre("Second"));
}

TEST_P(NotificationCenterContract, OfManyAtOnceTheNewestStays) {
    for (const char* title : {"First", "Second", "Third"})
        center().post(request("a", title));
    ASSERT_TRUE(showsOnly(1));
    EXPECT_THAT(titles(), ElementsAre("Third"));
}

TEST_P(NotificationCenterContract, OneThatComesAfterTheUserDismissedTheEarlierIsShown) {
    center().post(request("a", "First"));
    ASSERT_TRUE(shows(1));
    _screen->dismissAll();
    ASSERT_TRUE(shows(0));
    center().post(request("a", "Second"));
    EXPECT_TRUE(shows(1));
}

TEST_P(NotificationCenterContract, DifferentIdentifiersStandBesideEachOther) {
    center().post(request("a", "A"));
    center().post(request("b", "B"));
    EXPECT_TRUE(shows(2));
}

TEST_P(NotificationCenterContract, PostLaterShowsAtItsMomentAndNotBefore) {
    center().postLater(request("a", "A"), Seconds{60});
    scheduler().advance(Seconds{59.9});
    ASSERT_TRUE(showsOnly(0));
    scheduler().advance(Seconds{0.1});
    EXPECT_TRUE(shows(1));
    removeDelivered("a");
    EXPECT_TRUE(shows(0));
    scheduler().advance(Seconds{600});
    EXPECT_TRUE(showsOnly(0)) << "shown once";
}

TEST_P(NotificationCenterContract, LaterRequestOfTheSameIdentifierReplacesTheOneThatWaits) {
    center().postLater(request("a", "First"), Seconds{10});
    center().postLater(request("a", "Second"), Seconds{20});
    scheduler().advance(Seconds{15});
    ASSERT_TRUE(showsOnly(0));
    scheduler().advance(Seconds{5});
    ASSERT_TRUE(shows(1));
    EXPECT_THAT(titles(), ElementsAre("Second"));
}

TEST_P(NotificationCenterContract, OneThatWaitedReplacesTheOneOnTheScreen) {
    center().post(request("a", "First"));
    ASSERT_TRUE(shows(1));
    center().postLater(request("a", "Second"), Seconds{10});
    scheduler().advance(Seconds{10});
    ASSERT_TRUE(showsOnly(1));
    EXPECT_THAT(titles(), ElementsAre("Second"));
}

TEST_P(NotificationCenterContract, RemovedPendingOneIsNeverShown) {
    center().postLater(request("a", "A"), Seconds{10});
    center().postLater(request("b", "B"), Seconds{10});
    removePending("a");
    removePending("a");
    removePending("unknown");
    scheduler().advance(Seconds{60});
    ASSERT_TRUE(showsOnly(1));
    EXPECT_THAT(titles(), ElementsAre("B"));
}

TEST_P(NotificationCenterContract, RemovingPendingOnesLeavesTheScreenAlone) {
    center().post(request("a", "A"));
    ASSERT_TRUE(shows(1));
    removePending("a");
    EXPECT_TRUE(showsOnly(1));
}

TEST_P(NotificationCenterContract, RemovingDeliveredOnesLeavesPendingOnesAlone) {
    center().postLater(request("a", "A"), Seconds{10});
    removeDelivered("a");
    scheduler().advance(Seconds{10});
    EXPECT_TRUE(shows(1));
}

TEST_P(NotificationCenterContract, OneThatFellDueDuringASleepIsShownOnceAfterIt) {
    center().postLater(request("a", "A"), Seconds{60});
    scheduler().suspend(Seconds{7200});
    ASSERT_TRUE(shows(1));
    scheduler().suspend(Seconds{7200});
    EXPECT_TRUE(showsOnly(1));
}

TEST_P(NotificationCenterContract, OneWhoseMomentHasComeIsNotPendingAnyMore) {
    center().postLater(request("removed", "Removed"), Seconds{60});
    center().postLater(request("replaced", "Replaced"), Seconds{60});
    scheduler().standStill(Seconds{61});
    removePending("removed");
    center().postLater(request("replaced", "Later"), Seconds{60});
    ASSERT_TRUE(shows(2));
    scheduler().turn();
    EXPECT_TRUE(showsOnly(2));
}

TEST_P(NotificationCenterContract, OneThatIsRemovedRightBeforeItsMomentIsNotShown) {
    center().postLater(request("a", "A"), Seconds{60});
    scheduler().standStill(Seconds{59.99});
    removePending("a");
    scheduler().advance(Seconds{60});
    EXPECT_TRUE(showsOnly(0));
}

TEST_P(NotificationCenterContract, DeliveringShowsWhatIsPendingOnceAndNothingElse) {
    center().postLater(request("a", "A"), Seconds{60});
    center().postLater(request("b", "B"), Seconds{60});
    center().deliverPending("a");
    ASSERT_TRUE(shows(1));
    EXPECT_THAT(titles(), ElementsAre("A"));
    ASSERT_TRUE(shows(0));
    center().deliverPending("a");
    center().deliverPending("unknown");
    EXPECT_TRUE(showsOnly(0));
    removePending("b");
    scheduler().advance(Seconds{60});
    EXPECT_TRUE(showsOnly(0));
}

TEST_P(NotificationCenterContract, RemovedDeliveredOneLeavesTheScreen) {
    center().post(request("a", "A"));
    center().post(request("b", "B"));
    ASSERT_TRUE(shows(2));
    removeDelivered("a");
    removeDelivered("unknown");
    EXPECT_TRUE(shows(1));
}

TEST_P(NotificationCenterContract, OneThatIsTakenBackRightAwayDoesNotStay) {
    center().post(request("warm-up", "Warm-up"));
    ASSERT_TRUE(shows(1));
    center().post(request("a", "A"));
    removeDelivered("a");
    EXPECT_TRUE(showsOnly(1));
}

TEST_P(NotificationCenterContract, TellsTheButtonThatTheUserChoseAndTakesTheNotificationDown) {
    center().post(request("a", "A", "drift"));
    ASSERT_TRUE(shows(1));
    EXPECT_THAT(_chosen, IsEmpty());
    _screen->press();
    ASSERT_TRUE(waitUntil([&] { return !_chosen.empty(); }));
    EXPECT_THAT(_chosen, ElementsAre(Pair("a", "snooze")));
    EXPECT_TRUE(shows(0));
}

TEST_P(NotificationCenterContract, AskingForTheRightToShowNeedsNothingElse) {
    center().requestAuthorization();
    EXPECT_TRUE(showsOnly(0));
}

INSTANTIATE_TEST_SUITE_P(
    All, NotificationCenterContract,
    testing::Values(Kind{"Fake", [] { return std::make_unique<FakeScreen>(); }},
                    Kind{"Freedesktop", [] { return std::make_unique<PlainServerScreen>(); }},
                    Kind{"FreedesktopWithDunst", [] { return std::make_unique<DunstScreen>(); }}),
    [](const auto& test) { return test.param.name; });

} // namespace
} // namespace selvane::test
