#include "SelvaneCore/AppUsageRecorder.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace selvane {
namespace {

using Usage = std::vector<AppUsage>;

const Date sessionStart = test::utc(2026, 3, 5, 9);

/// The instant so many seconds into the session.
Date at(double seconds) {
    return adding(Seconds{seconds}, sessionStart);
}

/// Usage of an application whose name is that of `name`.
AppUsage usageBy(std::string bundleID, double seconds) {
    std::string name = "The " + bundleID;
    return {std::move(bundleID), std::move(name), Seconds{seconds}};
}

/// A recorder that is told of applications by a letter.
struct Recorder {
    AppUsageRecorder recorder;

    void begin(double seconds) { recorder.begin(std::nullopt, "", at(seconds)); }
    void begin(const std::string& id, double seconds) { recorder.begin(id, "The " + id, at(seconds)); }
    void activate(const std::string& id, double seconds) { recorder.activate(id, "The " + id, at(seconds)); }
    void suspend(double seconds) { recorder.suspend(at(seconds)); }
    void resume(double seconds) { recorder.resume(at(seconds)); }
    Usage finish(double seconds) { return recorder.finish(at(seconds)); }
    [[nodiscard]] bool isRecording() const { return recorder.isRecording(); }
};

TEST(AppUsageRecorder, OneApplicationGetsTheWholeSession) {
    Recorder recorder;
    recorder.begin("a", 0);
    EXPECT_EQ(recorder.finish(90), (Usage{usageBy("a", 90)}));
}

TEST(AppUsageRecorder, SegmentsOfOneApplicationAddUp) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("b", 10);
    recorder.activate("c", 15);
    recorder.activate("a", 18);
    EXPECT_EQ(recorder.finish(38), (Usage{usageBy("a", 30), usageBy("b", 5), usageBy("c", 3)}));
}

TEST(AppUsageRecorder, SegmentsInARowAddUp) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("a", 10);
    recorder.activate("a", 15);
    EXPECT_EQ(recorder.finish(20), (Usage{usageBy("a", 20)}));
}

TEST(AppUsageRecorder, AFlickerIsDropped) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("b", 10);
    recorder.activate("a", 10.9);
    EXPECT_EQ(recorder.finish(20), (Usage{usageBy("a", 19.1)}));
}

TEST(AppUsageRecorder, FlickersOfOneApplicationAddUp) {
    Recorder recorder;
    recorder.begin("b", 0);
    recorder.activate("a", 0.6);
    recorder.activate("b", 5);
    const Usage usages = recorder.finish(5.6);
    ASSERT_EQ(usages.size(), 2U);
    EXPECT_EQ(usages[0], usageBy("a", 4.4));
    EXPECT_EQ(usages[1].bundleID, "b");
    EXPECT_DOUBLE_EQ(usages[1].seconds.count(), 1.2);
}

struct LeastRow {
    const char* name;
    double seconds;
    bool stays;
};

class LeastTable : public testing::TestWithParam<LeastRow> {};

TEST_P(LeastTable, ASecondIsTheLeast) {
    Recorder recorder;
    recorder.begin("a", 0);
    EXPECT_EQ(recorder.finish(GetParam().seconds).size(), GetParam().stays ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(AppUsageRecorder, LeastTable,
                         testing::Values(LeastRow{"nothing", 0, false}, LeastRow{"flicker", 0.9, false},
                                         LeastRow{"aMicrosecondLess", 0.999999, false},
                                         LeastRow{"aSecond", 1, true},
                                         LeastRow{"aMicrosecondMore", 1.000001, true}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(AppUsageRecorder, ActivatingWhileSuspendedOnlyNotesTheFront) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.suspend(10);
    recorder.activate("b", 20);
    EXPECT_FALSE(recorder.isRecording());
    recorder.resume(30);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.finish(35), (Usage{usageBy("a", 10), usageBy("b", 5)}));
}

TEST(AppUsageRecorder, ResumingTwiceDoesNotRestartTheSegment) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.suspend(10);
    recorder.resume(20);
    recorder.resume(25);
    EXPECT_EQ(recorder.finish(30), (Usage{usageBy("a", 20)}));
}

TEST(AppUsageRecorder, SuspendingTwiceCountsOnce) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.suspend(10);
    recorder.suspend(20);
    EXPECT_EQ(recorder.finish(30), (Usage{usageBy("a", 10)}));
}

TEST(AppUsageRecorder, AClockSetBackAddsNothing) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("b", 100);
    recorder.activate("c", 40);
    EXPECT_EQ(recorder.finish(45), (Usage{usageBy("a", 100), usageBy("c", 5)}));
}

TEST(AppUsageRecorder, AClockSetBackTakesNothingAway) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.suspend(100);
    recorder.resume(200);
    recorder.suspend(150);
    EXPECT_EQ(recorder.finish(150), (Usage{usageBy("a", 100)}));
}

TEST(AppUsageRecorder, TheNameThatWasMetFirstStays) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.recorder.activate("a", "Renamed", at(10));
    EXPECT_EQ(recorder.finish(30), (Usage{usageBy("a", 30)}));
}

// A segment without any length has been met as well.
TEST(AppUsageRecorder, TheNameOfAnEmptySegmentStays) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.recorder.activate("a", "Renamed", at(0));
    EXPECT_EQ(recorder.finish(30), (Usage{usageBy("a", 30)}));
}

TEST(AppUsageRecorder, ANameOfAnEarlierSessionIsForgotten) {
    Recorder recorder;
    recorder.begin("a", 0);
    static_cast<void>(recorder.finish(10));
    recorder.recorder.begin("a", "Renamed", at(20));
    EXPECT_EQ(recorder.finish(30), (Usage{{"a", "Renamed", Seconds{10}}}));
}

TEST(AppUsageRecorder, BeginningDropsTheOpenSegmentAndAllTotals) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("b", 10);
    recorder.begin("c", 20);
    EXPECT_EQ(recorder.finish(25), (Usage{usageBy("c", 5)}));
}

TEST(AppUsageRecorder, BeginningWithoutAnIdentifierKeepsTheFront) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.activate("b", 10);
    EXPECT_EQ(recorder.finish(20).size(), 2U);
    recorder.begin(100);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.finish(105), (Usage{usageBy("b", 5)}));
}

TEST(AppUsageRecorder, BeginningWhileRecordingStartsTheSegmentAfresh) {
    Recorder recorder;
    recorder.begin("a", 0);
    recorder.begin(10);
    EXPECT_EQ(recorder.finish(15), (Usage{usageBy("a", 5)}));
}

// How a guard starts a session whose front it has not looked at yet.
TEST(AppUsageRecorder, AFrontThatIsPointedOutAfterTheBeginningCountsFromTheResumption) {
    Recorder recorder;
    recorder.begin(0);
    EXPECT_FALSE(recorder.isRecording());
    recorder.activate("a", 1);
    EXPECT_FALSE(recorder.isRecording());
    recorder.resume(2);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.finish(12), (Usage{usageBy("a", 10)}));
}

TEST(AppUsageRecorder, FinishingKeepsTheFrontAndNothingElse) {
    Recorder recorder;
    recorder.begin("a", 0);
    EXPECT_EQ(recorder.finish(10).size(), 1U);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(recorder.finish(20).empty());
    recorder.resume(30);
    EXPECT_EQ(recorder.finish(35), (Usage{usageBy("a", 5)}));
}

TEST(AppUsageRecorder, TimeAwayAndWebsitesAreEntriesToo) {
    Recorder recorder;
    recorder.recorder.begin(std::string(AppUsage::away), "Away", at(0));
    recorder.recorder.activate(AppUsage::siteID("example.org"), "example.org", at(10));
    EXPECT_EQ(recorder.finish(15),
              (Usage{{"away", "Away", Seconds{10}}, {"site:example.org", "example.org", Seconds{5}}}));
}

TEST(AppUsageRecorder, MostSecondsComeFirstThenNames) {
    Recorder recorder;
    recorder.recorder.begin("1", "b", at(0));
    recorder.recorder.activate("2", "\u00e9", at(5));
    recorder.recorder.activate("3", "a", at(10));
    recorder.recorder.activate("4", "Z", at(15));
    recorder.recorder.activate("5", "z", at(20));
    std::string order;
    for (const AppUsage& entry : recorder.finish(26))
        order += entry.bundleID;
    EXPECT_EQ(order, "54312");
}

TEST(AppUsageRecorder, FullTiesComeAsTheyWereFirstInFront) {
    Recorder recorder;
    std::string expected;
    for (int i = 0; i < 26; ++i) {
        const std::string id(1, static_cast<char>('z' - i));
        recorder.recorder.activate(id, "Same", at(i * 5.0));
        recorder.resume(i * 5.0);
        expected += id;
    }
    std::string order;
    for (const AppUsage& entry : recorder.finish(26 * 5))
        order += entry.bundleID;
    EXPECT_EQ(order, expected);
}

TEST(AppUsageRecorder, TheMostDistantInstantsDoNotOverflow) {
    AppUsageRecorder recorder;
    recorder.begin("a", "A", Date::min());
    recorder.activate("b", "B", Date::max());
    const Usage usages = recorder.finish(Date::min());
    ASSERT_EQ(usages.size(), 1U);
    EXPECT_DOUBLE_EQ(usages[0].seconds.count(), 0x1p64 / 1e6);
}

TEST(AppUsageRecorder, ACopyGoesItsOwnWay) {
    Recorder recorder;
    recorder.begin("a", 0);
    Recorder copy = recorder;
    EXPECT_EQ(copy.recorder, recorder.recorder);
    copy.activate("b", 10);
    EXPECT_NE(copy.recorder, recorder.recorder);
    EXPECT_EQ(recorder.finish(20), (Usage{usageBy("a", 20)}));
    EXPECT_EQ(copy.finish(20), (Usage{usageBy("a", 10), usageBy("b", 10)}));
}

enum class State { idleWithNothingInFront, idle, recording };
enum class Operation { beginWithFront, begin, activate, suspend, resume, finish };

/// What an operation makes of a state. Time before the operation is spent in "old"; what it puts in front, if
/// anything, is "new".
struct TransitionRow {
    const char* name;
    State before;
    Operation operation;
    bool isRecording;
    /// The usage when the session is finished ten seconds after the operation.
    Usage usage;
    /// What is in front afterwards; empty for nothing.
    const char* front;
};

class TransitionTable : public testing::TestWithParam<TransitionRow> {
protected:
    void bringTo(State state) {
        switch (state) {
        case State::idleWithNothingInFront:
            return;
        case State::idle:
            _recorder.begin("old", 0);
            return _recorder.suspend(7);
        case State::recording:
            return _recorder.begin("old", 0);
        }
    }

    void apply(Operation operation) {
        switch (operation) {
        case Operation::beginWithFront:
            return _recorder.begin("new", 20);
        case Operation::begin:
            return _recorder.begin(20);
        case Operation::activate:
            return _recorder.activate("new", 20);
        case Operation::suspend:
            return _recorder.suspend(20);
        case Operation::resume:
            return _recorder.resume(20);
        case Operation::finish:
            _finished = _recorder.finish(20);
            return;
        }
    }

    /// The front shows in a session that begins without being told of it.
    std::string front() {
        _recorder.begin(100);
        const Usage usages = _recorder.finish(200);
        return usages.empty() ? "" : usages[0].bundleID;
    }

    Recorder _recorder;
    Usage _finished;
};

TEST_P(TransitionTable, LeadsToTheState) {
    const TransitionRow& row = GetParam();
    bringTo(row.before);
    apply(row.operation);
    EXPECT_EQ(_recorder.isRecording(), row.isRecording);
    const Usage later = _recorder.finish(30);
    if (row.operation == Operation::finish) {
        EXPECT_EQ(_finished, row.usage);
        EXPECT_EQ(later, Usage{});
    } else {
        EXPECT_EQ(later, row.usage);
    }
    EXPECT_EQ(front(), row.front);
}

INSTANTIATE_TEST_SUITE_P(
    AppUsageRecorder, TransitionTable,
    testing::Values(
        TransitionRow{"unknownBeginWithFront", State::idleWithNothingInFront, Operation::beginWithFront, true,
                      Usage{usageBy("new", 10)}, "new"},
        TransitionRow{"unknownBegin", State::idleWithNothingInFront, Operation::begin, false, Usage{}, ""},
        TransitionRow{"unknownActivate", State::idleWithNothingInFront, Operation::activate, false, Usage{},
                      "new"},
        TransitionRow{"unknownSuspend", State::idleWithNothingInFront, Operation::suspend, false, Usage{},
                      ""},
        TransitionRow{"unknownResume", State::idleWithNothingInFront, Operation::resume, false, Usage{}, ""},
        TransitionRow{"unknownFinish", State::idleWithNothingInFront, Operation::finish, false, Usage{}, ""},
        TransitionRow{"idleBeginWithFront", State::idle, Operation::beginWithFront, true,
                      Usage{usageBy("new", 10)}, "new"},
        TransitionRow{"idleBegin", State::idle, Operation::begin, true, Usage{usageBy("old", 10)}, "old"},
        TransitionRow{"idleActivate", State::idle, Operation::activate, false, Usage{usageBy("old", 7)},
                      "new"},
        TransitionRow{"idleSuspend", State::idle, Operation::suspend, false, Usage{usageBy("old", 7)}, "old"},
        TransitionRow{"idleResume", State::idle, Operation::resume, true, Usage{usageBy("old", 17)}, "old"},
        TransitionRow{"idleFinish", State::idle, Operation::finish, false, Usage{usageBy("old", 7)}, "old"},
        TransitionRow{"recordingBeginWithFront", State::recording, Operation::beginWithFront, true,
                      Usage{usageBy("new", 10)}, "new"},
        TransitionRow{"recordingBegin", State::recording, Operation::begin, true, Usage{usageBy("old", 10)},
                      "old"},
        TransitionRow{"recordingActivate", State::recording, Operation::activate, true,
                      Usage{usageBy("old", 20), usageBy("new", 10)}, "new"},
        TransitionRow{"recordingSuspend", State::recording, Operation::suspend, false,
                      Usage{usageBy("old", 20)}, "old"},
        TransitionRow{"recordingResume", State::recording, Operation::resume, true, Usage{usageBy("old", 30)},
                      "old"},
        TransitionRow{"recordingFinish", State::recording, Operation::finish, false,
                      Usage{usageBy("old", 20)}, "old"}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace selvane
