#include "Selvane/Platform/Linux/ServerSearch.h"

#include "Support/EnvironmentVariable.h"
#include "Support/EventLoop.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;

class ServerSearchTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path folder() const { return _place.path() / "pulse"; }
    [[nodiscard]] int looks() const { return static_cast<int>(_looks.size()); }

    static void makeFile(const std::filesystem::path& file) { std::ofstream stream(file); }

    /// Until what happened in the folders so far has been dealt with.
    static void settle() {
        const TemporaryFolder place;
        const EnvironmentVariable elsewhere("PULSE_RUNTIME_PATH", (place.path() / "marker").string());
        bool isSeen = false;
        ManualScheduler scheduler;
        const Seconds begin = scheduler.now();
        ServerSearch later(scheduler, [&isSeen] { isSeen = true; });
        later.wait();
        std::filesystem::create_directory(place.path() / "marker");
        EXPECT_TRUE(waitUntil([&] {
            if (scheduler.now() < begin + 0.9 * ServerSearch::shortestWait)
                scheduler.advance(Seconds{0.01});
            return isSeen;
        }));
    }

    /// Whether it looks soon, as it does when the socket appeared.
    [[nodiscard]] bool looksSoon() {
        settle();
        const int before = looks();
        _scheduler.advance(ServerSearch::waitForNewServer);
        return looks() == before + 1;
    }

    TemporaryFolder _place;
    EnvironmentVariable _runtime{"XDG_RUNTIME_DIR", _place.path().string()};
    EnvironmentVariable _other{"PULSE_RUNTIME_PATH", std::nullopt};
    ManualScheduler _scheduler;
    /// When it looked.
    std::vector<double> _looks;
    ServerSearch _search{_scheduler, [this] { _looks.push_back(_scheduler.now().count()); }};
};

TEST_F(ServerSearchTest, LooksEverMoreSeldom) {
    const double begin = _scheduler.now().count();
    for (int turn = 0; turn < 8; ++turn) {
        _search.wait();
        _scheduler.advance(Seconds{100});
    }
    std::vector<double> waits;
    for (int turn = 0; turn < looks(); ++turn)
        waits.push_back(_looks.at(static_cast<std::size_t>(turn)) - begin - 100 * turn);
    EXPECT_THAT(waits, ElementsAre(1, 2, 4, 8, 16, 30, 30, 30));
}

TEST_F(ServerSearchTest, LooksMoreOftenForAMomentWhenTheSocketAppears) {
    std::filesystem::create_directory(folder());
    for (int turn = 0; turn < 8; ++turn) {
        _search.wait();
        _scheduler.advance(Seconds{100});
    }
    _search.wait();
    makeFile(folder() / "native");
    EXPECT_TRUE(looksSoon());
    for (const double wait : {0.5, 1.0, 2.0, 4.0}) {
        _search.wait();
        const double before = _scheduler.now().count();
        _scheduler.advance(Seconds{100});
        EXPECT_NEAR(_looks.back() - before, wait, 1e-6);
    }
}

TEST_F(ServerSearchTest, BegunAnewItLooksSoon) {
    for (int turn = 0; turn < 8; ++turn) {
        _search.wait();
        _scheduler.advance(Seconds{100});
    }
    _search.beginAnew();
    _search.wait();
    _scheduler.advance(Seconds{1});
    EXPECT_EQ(looks(), 9);
}

TEST_F(ServerSearchTest, WaitingTwiceIsWaitingOnce) {
    _search.wait();
    _search.wait();
    _scheduler.advance(Seconds{100});
    EXPECT_EQ(looks(), 1);
    EXPECT_EQ(_scheduler.waiting(), 0);
}

TEST_F(ServerSearchTest, LooksNoMoreOnceItHasEnded) {
    _search.wait();
    _search.end();
    EXPECT_EQ(_scheduler.waiting(), 0);
    std::filesystem::create_directory(folder());
    makeFile(folder() / "native");
    settle();
    EXPECT_EQ(_scheduler.waiting(), 0);
    _scheduler.advance(Seconds{100});
    EXPECT_EQ(looks(), 0);
}

TEST_F(ServerSearchTest, LooksSoonWhenTheSocketAppears) {
    std::filesystem::create_directory(folder());
    _search.wait();
    makeFile(folder() / "native");
    EXPECT_TRUE(looksSoon());
    EXPECT_EQ(_scheduler.waiting(), 0) << "it waits to be told that it was in vain";
    // Servers may make it elsewhere first.
    _search.wait();
    makeFile(_place.path() / "other");
    std::filesystem::rename(_place.path() / "other", folder() / "native");
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, LooksSoonWhenTheFolderComesAndWhenTheSocketFollows) {
    _search.wait();
    std::filesystem::create_directory(folder());
    EXPECT_TRUE(looksSoon());
    _search.wait();
    makeFile(folder() / "native");
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, LooksSoonInAFolderThatWasMadeAgain) {
    std::filesystem::create_directory(folder());
    _search.wait();
    std::filesystem::remove(folder());
    std::filesystem::create_directory(folder());
    EXPECT_TRUE(looksSoon());
    _search.wait();
    makeFile(folder() / "native");
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, OtherFilesAreNoNews) {
    std::filesystem::create_directory(folder());
    _search.wait();
    makeFile(_place.path() / "native");
    makeFile(_place.path() / "pipewire-0");
    makeFile(folder() / "pid");
    std::filesystem::create_directory(_place.path() / "pulses");
    EXPECT_FALSE(looksSoon());
    makeFile(folder() / "native");
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, SocketThatAppearsDuringALookIsLookedForSoonAfterIt) {
    std::filesystem::create_directory(folder());
    for (int turn = 0; turn < 8; ++turn) {
        _search.wait();
        _scheduler.advance(Seconds{100});
    }
    makeFile(folder() / "native");
    EXPECT_FALSE(looksSoon());
    _search.wait();
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, TheSocketsOwnFolderCanBeNamed) {
    const EnvironmentVariable named("PULSE_RUNTIME_PATH", (_place.path() / "named").string());
    _search.wait();
    std::filesystem::create_directory(_place.path() / "named");
    EXPECT_TRUE(looksSoon());
}

TEST_F(ServerSearchTest, WithoutAFolderToWatchItLooksFromTimeToTime) {
    for (const std::optional<std::string>& place : {std::optional<std::string>("/nowhere/at/all"), {}}) {
        const EnvironmentVariable runtime("XDG_RUNTIME_DIR", place);
        const int before = looks();
        _search.beginAnew();
        _search.wait();
        _scheduler.advance(Seconds{1});
        EXPECT_EQ(looks(), before + 1);
        _search.end();
    }
}

} // namespace
} // namespace selvane::test
