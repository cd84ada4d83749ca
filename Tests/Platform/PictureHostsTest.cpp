#include "Selvane/Platform/Linux/PictureHosts.h"

#include "KnownHost.h"
#include "Support/EventLoop.h"
#include "Support/PrivateBus.h"

#include <gtest/gtest.h>

#include <optional>

namespace selvane::test {
namespace {

class PictureHostsTest : public testing::Test {
protected:
    PictureHostsTest() {
        _hosts.onChange = [this] { ++_changes; };
    }

    /// Asks, and waits until the answer has arrived.
    bool answer() {
        _hosts.ask();
        // The bus works in order, so what is asked later on the same connection is answered later.
        const QDBusMessage later =
            ask(_connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"), {});
        QCoreApplication::processEvents();
        EXPECT_EQ(later.type(), QDBusMessage::ReplyMessage);
        return _hosts.keepShape();
    }

    PrivateBus _bus;
    QDBusConnection _connection = _bus.connect();
    PictureHosts _hosts{_connection};
    int _changes = 0;
};

TEST_F(PictureHostsTest, WithoutAHostTheAnswerIsNo) {
    EXPECT_FALSE(answer());
    EXPECT_EQ(_changes, 0);
}

TEST_F(PictureHostsTest, WaybarKeepsTheShape) {
    std::optional<KnownHost> waybar(std::in_place, _bus.connect(), "waybar");
    EXPECT_TRUE(answer());
    EXPECT_EQ(_changes, 1);
    EXPECT_TRUE(answer());
    EXPECT_EQ(_changes, 1);
    waybar.reset();
    EXPECT_TRUE(waitUntil([this] { return !answer(); }));
    EXPECT_EQ(_changes, 2);
}

TEST_F(PictureHostsTest, OthersDoNot) {
    const KnownHost other(_bus.connect(), "plasmashell");
    EXPECT_FALSE(answer());
}

TEST_F(PictureHostsTest, OneOfTwoIsNotEnough) {
    const KnownHost waybar(_bus.connect(), "waybar");
    const KnownHost other(_bus.connect(), "plasmashell");
    EXPECT_FALSE(answer());
}

TEST(PictureHostsWithoutBus, AnswerIsNo) {
    EXPECT_FALSE(PictureHosts(QDBusConnection(QStringLiteral("none"))).keepShape());
}

} // namespace
} // namespace selvane::test
