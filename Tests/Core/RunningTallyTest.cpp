#include "SelvaneCore/RunningTally.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace selvane {
namespace {

/// Notes which tally was given how many sessions.
struct CountingTally {
    using Question = char;

    explicit CountingTally(char question) : name(question) {}
    void add(const FocusSession&) { added += name; }

    char name;
    static inline std::string added;
};

class RunningTallyTest : public testing::Test {
protected:
    RunningTallyTest() { CountingTally::added.clear(); }

    /// What had to be counted in order to answer.
    std::string ask(char question) {
        CountingTally::added.clear();
        EXPECT_EQ(tally.over(sessions, question).name, question);
        return CountingTally::added;
    }

    std::vector<FocusSession> sessions = std::vector<FocusSession>(2);
    RunningTally<CountingTally, 2> tally;
};

TEST_F(RunningTallyTest, AQuestionAskedAgainCostsWhatCame) {
    EXPECT_EQ(ask('a'), "aa");
    EXPECT_EQ(ask('a'), "");
    sessions.resize(5);
    EXPECT_EQ(ask('a'), "aaa");
}

TEST_F(RunningTallyTest, QuestionsInTurnAreBothRemembered) {
    EXPECT_EQ(ask('a'), "aa");
    EXPECT_EQ(ask('b'), "bb");
    sessions.resize(3);
    EXPECT_EQ(ask('a'), "a");
    EXPECT_EQ(ask('b'), "b");
}

TEST_F(RunningTallyTest, ThatAskedLongestAgoIsForgotten) {
    ask('a');
    ask('b');
    ask('a');
    EXPECT_EQ(ask('c'), "cc");
    EXPECT_EQ(ask('a'), "");
    EXPECT_EQ(ask('b'), "bb");
}

} // namespace
} // namespace selvane
