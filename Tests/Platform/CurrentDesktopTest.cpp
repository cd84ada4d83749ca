#include "Selvane/Platform/Linux/CurrentDesktop.h"

#include <QtCore/QByteArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane::test {
namespace {

using testing::ElementsAre;

class CurrentDesktopTest : public testing::Test {
protected:
    ~CurrentDesktopTest() override {
        if (_before.isNull())
            qunsetenv("XDG_CURRENT_DESKTOP");
        else
            qputenv("XDG_CURRENT_DESKTOP", _before);
    }

private:
    QByteArray _before = qgetenv("XDG_CURRENT_DESKTOP");
};

TEST_F(CurrentDesktopTest, HasOneNameOrSeveralOrNone) {
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    EXPECT_THAT(currentDesktops(), ElementsAre("XFCE"));
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_THAT(currentDesktops(), ElementsAre("ubuntu", "GNOME"));
    qputenv("XDG_CURRENT_DESKTOP", "");
    EXPECT_THAT(currentDesktops(), ElementsAre());
    qunsetenv("XDG_CURRENT_DESKTOP");
    EXPECT_THAT(currentDesktops(), ElementsAre());
}

} // namespace
} // namespace selvane::test
