#include "Selvane/Platform/Linux/X11Windows.h"

#include "Support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <ostream>

namespace selvane::test {
namespace {

TEST(X11Windows, AProgramThatMakesNoWindowsHasNoConnection) {
    EXPECT_EQ(X11Windows::connection(), nullptr);
}

struct Display {
    const char* name;
    const char* value;
    int screen;
};

void PrintTo(const Display& display, std::ostream* stream) {
    *stream << display.name;
}

class X11WindowsScreens : public testing::TestWithParam<Display> {};

TEST_P(X11WindowsScreens, AreNamedByTheDisplay) {
    const EnvironmentVariable display("DISPLAY", GetParam().value);
    EXPECT_EQ(X11Windows::screenNumber(), GetParam().screen);
}

INSTANTIATE_TEST_SUITE_P(All, X11WindowsScreens,
                         testing::Values(Display{"First", ":7", 0}, Display{"FirstByName", ":7.0", 0},
                                         Display{"Second", ":7.1", 1},
                                         Display{"OfAnotherMachine", "example.org:7.2", 2},
                                         Display{"NoDisplay", "", 0}, Display{"NoSense", "screen.1", 0}),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace selvane::test
