#include "Selvane/Platform/Linux/ActivationToken.h"

#include "Support/EnvironmentVariable.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace selvane::test {
namespace {

class ActivationTokenTest : public testing::Test {
protected:
    static QByteArray token() { return qgetenv(ActivationToken::variable); }

    /// As Qt does when it has shown the token to the compositor.
    static void takeToken() { qunsetenv(ActivationToken::variable); }

    static std::vector<const char*> environment() { return {environ, environ + count()}; }

    static std::size_t count() {
        std::size_t number = 0;
        while (environ[number] != nullptr)
            ++number;
        return number;
    }

    EnvironmentVariable _before{ActivationToken::variable, std::nullopt};
};

TEST_F(ActivationTokenTest, EachTokenIsThereUntilItIsTaken) {
    ActivationToken::prepare();
    EXPECT_EQ(token(), QByteArray());
    ActivationToken::leave("one");
    EXPECT_EQ(token(), "one");
    ActivationToken::leave("another, and longer");
    EXPECT_EQ(token(), "another, and longer");
    takeToken();
    EXPECT_FALSE(qEnvironmentVariableIsSet(ActivationToken::variable));
    ActivationToken::leave("two");
    EXPECT_EQ(token(), "two");
}

TEST_F(ActivationTokenTest, NoOtherVariableEverMoves) {
    ActivationToken::prepare();
    char** const place = environ;
    const std::vector<const char*> others = environment();
    for (const char* const each : {"one", "two", "three"}) {
        ActivationToken::leave(each);
        EXPECT_EQ(environ, place);
        std::vector<const char*> all = environment();
        ASSERT_EQ(all.size(), others.size() + 1);
        all.pop_back();
        EXPECT_EQ(all, others);
        takeToken();
        EXPECT_EQ(environ, place);
        EXPECT_EQ(environment(), others);
    }
}

TEST_F(ActivationTokenTest, ATokenThatIsDroppedLeavesEverythingElse) {
    ActivationToken::prepare();
    const std::vector<const char*> others = environment();
    ActivationToken::drop();
    EXPECT_EQ(environment(), others);
    ActivationToken::leave("one");
    ActivationToken::drop();
    EXPECT_FALSE(qEnvironmentVariableIsSet(ActivationToken::variable));
    EXPECT_EQ(environment(), others);
    ActivationToken::leave("two");
    EXPECT_EQ(token(), "two");
}

TEST_F(ActivationTokenTest, ATokenOfTheStartStaysAndGoesToTheEnd) {
    const EnvironmentVariable given(ActivationToken::variable, "of the launcher");
    const EnvironmentVariable later("SELVANE_TEST_LATER", "there");
    ActivationToken::prepare();
    EXPECT_EQ(token(), "of the launcher");
    EXPECT_EQ(environment().back(), std::string(ActivationToken::variable) + "=of the launcher");
    EXPECT_EQ(qgetenv("SELVANE_TEST_LATER"), "there");
}

TEST_F(ActivationTokenTest, WhatCanNotBeATokenIsNotLeft) {
    ActivationToken::prepare();
    ActivationToken::leave("one");
    ActivationToken::leave(std::string(100'000, 'x'));
    ActivationToken::leave(std::string("two\0three", 9));
    EXPECT_EQ(token(), "one");
}

TEST_F(ActivationTokenTest, SomebodyElsesEnvironmentGetsTheTokenToo) {
    ActivationToken::prepare();
    const EnvironmentVariable other("SELVANE_TEST_OTHER", "there");
    ActivationToken::leave("one");
    EXPECT_EQ(token(), "one");
    takeToken();
    EXPECT_EQ(qgetenv("SELVANE_TEST_OTHER"), "there");
}

} // namespace
} // namespace selvane::test
