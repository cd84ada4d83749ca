#include "Support/Repeats.h"
#include "Support/StoreFixture.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <iostream>
#include <variant>

namespace selvane {
namespace {

using test::History;
using test::RandomRecords;

class StoreKillTest : public test::StoreFixture {
protected:
    static constexpr int killCount = test::repeats(5000);

    /// The time that a fast save takes here, so that deaths fall into every part of it.
    std::chrono::nanoseconds lengthOfASave(const History& history) {
        auto shortest = std::chrono::nanoseconds::max();
        for (int save = 0; save < 20; ++save) {
            const auto start = std::chrono::steady_clock::now();
            EXPECT_TRUE(historyStore().save(history));
            shortest = std::min<std::chrono::nanoseconds>(shortest, std::chrono::steady_clock::now() - start);
        }
        return shortest;
    }

    /// A child process that saves one version after the other until it is killed.
    pid_t startSaver(const std::array<History, 3>& versions) {
        const pid_t child = ::fork();
        if (child != 0)
            return child;
        for (std::size_t index = 0;; ++index) {
            if (!historyStore().save(versions[index % versions.size()]))
                ::_exit(EXIT_FAILURE);
        }
    }

    static void wait(std::chrono::nanoseconds length) {
        const timespec duration{0, std::min<long>(length.count(), 999'999'999)};
        ::nanosleep(&duration, nullptr);
    }
};

TEST_F(StoreKillTest, AFileIsWholeWheneverItsWriterDies) {
    std::array<History, 3> versions;
    for (std::size_t index = 0; index < versions.size(); ++index)
        versions[index] = RandomRecords(index).history(20 + 10 * index);
    const std::chrono::nanoseconds save = lengthOfASave(versions.back());
    const auto longest = static_cast<std::uint64_t>(3 * save.count());

    RandomRecords random(17);
    std::array<int, 3> found{};
    int inTheMidst = 0;
    for (int kill = 0; kill < killCount; ++kill) {
        const pid_t child = startSaver(versions);
        ASSERT_GT(child, 0);
        wait(std::chrono::nanoseconds(random.below(longest)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";

        const auto result = historyStore().read();
        const auto* const loaded = std::get_if<JSONStore<History>::Loaded>(&result);
        ASSERT_TRUE(loaded) << "after " << kill << " kills";
        const auto version = std::ranges::find(versions, loaded->value);
        ASSERT_NE(version, versions.end()) << "after " << kill << " kills";
        ++found[static_cast<std::size_t>(version - versions.begin())];

        // At most one temporary file: each save removes what the one before it left.
        const std::size_t count = names().size();
        ASSERT_LE(count, 2U);
        inTheMidst += count == 2;
    }
    std::cout << killCount << " kills, " << inTheMidst
              << " of them in the midst of writing; versions found: " << found[0] << ", " << found[1] << ", "
              << found[2] << '\n';
    EXPECT_GT(inTheMidst, 0);

    ASSERT_TRUE(historyStore().save(versions[0]));
    EXPECT_EQ(names(), std::vector<std::string>{"sessions.json"});
}

} // namespace
} // namespace selvane
