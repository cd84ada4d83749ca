#include "SelvaneCore/TaskList.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace selvane {
namespace {

using test::utc;

const Date now = utc(2026, 3, 5, 12);

/// The id that belongs to a task's one-letter title.
UUID idOf(char title) {
    UUID::Bytes bytes{};
    bytes[15] = static_cast<std::uint8_t>(title);
    return UUID(bytes);
}

TaskItem openTask(char title) {
    return {.id = idOf(title),
            .title = std::string(1, title),
            .isDone = false,
            .createdAt = utc(2026, 3, 1),
            .completedAt = std::nullopt,
            .estimatedPomodoros = 0,
            .completedPomodoros = 0};
}

TaskItem doneTask(char title, std::optional<Date> completedAt) {
    TaskItem item = openTask(title);
    item.isDone = true;
    item.completedAt = completedAt;
    return item;
}

TaskList openTasks(std::string_view titles) {
    TaskList list;
    for (const char title : titles)
        list.items.push_back(openTask(title));
    return list;
}

std::string titles(const std::vector<TaskItem>& items) {
    std::string result;
    for (const TaskItem& item : items)
        result += item.title;
    return result;
}

TEST(TaskList, AListFromElsewhereIsTakenAsItStands) {
    const TaskList list{{doneTask('x', now), openTask('a')}};
    EXPECT_EQ(titles(list.items), "xa");
}

TEST(TaskList, OpenAndDoneKeepTheOrder) {
    const TaskList list{{openTask('b'), doneTask('y', now), openTask('a'), doneTask('x', now)}};
    EXPECT_EQ(titles(list.open()), "ba");
    EXPECT_EQ(titles(list.done()), "yx");
}

TEST(TaskList, FindsTheFirstItemWithTheId) {
    TaskList list = openTasks("aba");
    list.items[2].title = "other";
    ASSERT_NE(list.find(idOf('a')), nullptr);
    EXPECT_EQ(list.find(idOf('a'))->title, "a");
    EXPECT_EQ(list.find(idOf('z')), nullptr);
}

TEST(TaskList, UnknownIdsChangeNothing) {
    const TaskList before{{doneTask('x', now), openTask('a')}};
    TaskList list = before;
    list.setDone(idOf('z'), true, now);
    list.rename(idOf('z'), "other");
    list.setEstimate(idOf('z'), 3);
    list.creditPomodoro(idOf('z'));
    list.remove(idOf('z'));
    EXPECT_EQ(list, before);
}

TEST(TaskList, TickingOffStampsTheDateAndKeepsThePlace) {
    TaskList list = openTasks("abc");
    list.setDone(idOf('b'), true, now);
    EXPECT_EQ(titles(list.items), "abc");
    EXPECT_TRUE(list.items[1].isDone);
    EXPECT_EQ(list.items[1].completedAt, now);
}

TEST(TaskList, TickingOffAgainMovesTheDate) {
    TaskList list{{doneTask('x', utc(2026, 3, 1))}};
    list.setDone(idOf('x'), true, now);
    EXPECT_EQ(list.items[0].completedAt, now);
}

TEST(TaskList, OpeningAgainClearsTheDateAndEndsTheOpenRun) {
    TaskList list{{openTask('a'), openTask('b'), doneTask('x', now), doneTask('y', utc(2026, 3, 1))}};
    list.setDone(idOf('y'), false, now);
    EXPECT_EQ(list.items[3].completedAt, std::nullopt);
    EXPECT_FALSE(list.items[3].isDone);
    list.normalize();
    EXPECT_EQ(titles(list.items), "abyx");
}

TEST(TaskList, ANegativeEstimateIsZero) {
    TaskList list = openTasks("a");
    list.setEstimate(idOf('a'), 4);
    EXPECT_EQ(list.items[0].estimatedPomodoros, 4);
    list.setEstimate(idOf('a'), -3);
    EXPECT_EQ(list.items[0].estimatedPomodoros, 0);
    list.setEstimate(idOf('a'), 1000);
    EXPECT_EQ(list.items[0].estimatedPomodoros, 1000);
}

TEST(TaskList, CreditingCountsForOpenAndDoneTasks) {
    TaskList list{{openTask('a'), doneTask('x', now)}};
    list.creditPomodoro(idOf('a'));
    list.creditPomodoro(idOf('x'));
    list.creditPomodoro(idOf('x'));
    EXPECT_EQ(list.items[0].completedPomodoros, 1);
    EXPECT_EQ(list.items[1].completedPomodoros, 2);
}

TEST(TaskList, TheLargestCountStays) {
    TaskList list = openTasks("a");
    list.items[0].completedPomodoros = std::numeric_limits<std::int64_t>::max();
    list.creditPomodoro(idOf('a'));
    EXPECT_EQ(list.items[0].completedPomodoros, std::numeric_limits<std::int64_t>::max());
}

TEST(TaskList, RemovingTakesEveryItemWithTheId) {
    TaskList list = openTasks("abacd");
    list.remove(idOf('a'));
    EXPECT_EQ(titles(list.items), "bcd");
}

TEST(TaskList, OnlyRemovingMeansEveryItemWithTheId) {
    const TaskList twice = openTasks("abac");
    const auto expectOnlyTheFirstChanged = [&](const TaskList& list) {
        ASSERT_EQ(list.items.size(), 4U);
        EXPECT_NE(list.items[0], twice.items[0]);
        for (const std::size_t place : {1U, 2U, 3U})
            EXPECT_EQ(list.items[place], twice.items[place]) << place;
    };
    TaskList list = twice;
    list.setDone(idOf('a'), true, now);
    expectOnlyTheFirstChanged(list);
    list = twice;
    list.rename(idOf('a'), "other");
    expectOnlyTheFirstChanged(list);
    list = twice;
    list.setEstimate(idOf('a'), 3);
    expectOnlyTheFirstChanged(list);
    list = twice;
    list.creditPomodoro(idOf('a'));
    expectOnlyTheFirstChanged(list);
    list.remove(idOf('a'));
    EXPECT_EQ(titles(list.items), "bc");
}

TEST(TaskList, AnItemMayBeRemovedByItsOwnId) {
    // The second of them comes after one that takes its place.
    TaskList list = openTasks("abac");
    list.remove(list.items[0].id);
    EXPECT_EQ(titles(list.items), "bc");
}

TEST(TaskList, ClearingRemovesWhatIsDone) {
    TaskList list{{openTask('a'), doneTask('x', now), openTask('b'), doneTask('y', std::nullopt)}};
    list.clearCompleted();
    EXPECT_EQ(titles(list.items), "ab");
}

TEST(TaskList, RemovingByPredicateKeepsTheOrderOfTheOthers) {
    TaskList list = openTasks("abcde");
    list.removeAll([](const TaskItem& item) { return item.title == "b" || item.title == "d"; });
    EXPECT_EQ(titles(list.items), "ace");
    list.removeAll([](const TaskItem&) { return false; });
    EXPECT_EQ(titles(list.items), "ace");
}

TEST(TaskListOrder, OpenTasksComeFirstInTheirOrder) {
    TaskList list{{doneTask('x', now), openTask('c'), openTask('a'), doneTask('y', now), openTask('b')}};
    list.normalize();
    EXPECT_EQ(titles(list.items), "cabxy");
}

TEST(TaskListOrder, DoneTasksComeLatestFirst) {
    TaskList list{{doneTask('n', std::nullopt), doneTask('9', utc(2026, 3, 5, 9)),
                   doneTask('e', utc(2026, 3, 5, 11)), doneTask('t', utc(2026, 3, 5, 10))}};
    list.normalize();
    EXPECT_EQ(titles(list.items), "et9n");
}

TEST(TaskListOrder, TiesKeepTheirOrder) {
    TaskList list{
        {doneTask('p', std::nullopt), doneTask('b', now), doneTask('q', distantPast), doneTask('a', now)}};
    list.normalize();
    EXPECT_EQ(titles(list.items), "bapq");
}

TEST(TaskListOrder, ManyTiesKeepTheirOrder) {
    // More than a sort would put in order by insertion, which keeps ties anyway.
    TaskList list;
    for (int number = 0; number < 200; ++number) {
        list.items.push_back(doneTask('x', now - std::chrono::days{number * 7 % 3}));
        list.items.back().estimatedPomodoros = number;
    }
    list.normalize();
    const auto isInOrder = [](const TaskItem& left, const TaskItem& right) {
        return left.completedAt > right.completedAt ||
               (left.completedAt == right.completedAt && left.estimatedPomodoros < right.estimatedPomodoros);
    };
    EXPECT_TRUE(std::ranges::is_sorted(list.items, isInOrder));
}

TEST(TaskListOrder, NormalizingTwiceChangesNothingMore) {
    TaskList list{{doneTask('x', utc(2026, 3, 1)), openTask('b'), doneTask('y', now), openTask('a')}};
    list.normalize();
    const TaskList once = list;
    list.normalize();
    EXPECT_EQ(list, once);
}

struct MoveRow {
    const char* name;
    const char* before;
    std::set<std::ptrdiff_t> offsets;
    std::ptrdiff_t destination;
    const char* after;
};

class TaskListMove : public testing::TestWithParam<MoveRow> {};

TEST_P(TaskListMove, InsertsTheSelectionAsOneRun) {
    TaskList list = openTasks(GetParam().before);
    list.move(GetParam().offsets, GetParam().destination);
    EXPECT_EQ(titles(list.items), GetParam().after);
}

constexpr std::ptrdiff_t most = std::numeric_limits<std::ptrdiff_t>::max();
constexpr std::ptrdiff_t least = std::numeric_limits<std::ptrdiff_t>::min();

INSTANTIATE_TEST_SUITE_P(
    TaskList, TaskListMove,
    testing::Values(MoveRow{"selectionDown", "ABCDE", {0, 2}, 4, "BDACE"},
                    MoveRow{"oneDown", "ABC", {0}, 2, "BAC"}, MoveRow{"oneUp", "ABC", {2}, 0, "CAB"},
                    MoveRow{"toItsOwnPlace", "ABC", {1}, 1, "ABC"},
                    MoveRow{"toJustBehindItself", "ABC", {1}, 2, "ABC"},
                    MoveRow{"toTheEnd", "ABC", {0}, 3, "BCA"}, MoveRow{"pastTheEnd", "ABC", {0}, 99, "BCA"},
                    MoveRow{"farPastTheEnd", "ABC", {0}, most, "BCA"},
                    MoveRow{"beforeTheStart", "ABC", {2}, -5, "CAB"},
                    MoveRow{"farBeforeTheStart", "ABC", {0, 2}, least, "ACB"},
                    MoveRow{"staleOffsetsAreDropped", "ABC", {-1, 0, 3, 99}, 2, "BAC"},
                    MoveRow{"onlyStaleOffsets", "ABC", {-1, 3}, 0, "ABC"},
                    MoveRow{"nothingSelected", "ABC", {}, 0, "ABC"},
                    MoveRow{"everything", "ABC", {0, 1, 2}, 1, "ABC"}, MoveRow{"emptyList", "", {0}, 0, ""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(TaskListMove, OnlyStaleOffsetsDoNotNormalize) {
    TaskList list{{doneTask('x', now), openTask('a')}};
    list.move({2, -1}, 0);
    EXPECT_EQ(titles(list.items), "xa");
}

TEST(TaskListMove, ADoneTaskAmongOpenOnesSpringsBack) {
    TaskList list{{openTask('a'), openTask('b'), doneTask('x', now)}};
    list.move({2}, 1);
    EXPECT_EQ(titles(list.items), "abx");
}

TEST(TaskListMove, AnOpenTaskBelowDoneOnesEndsTheOpenRun) {
    TaskList list{{openTask('a'), openTask('b'), doneTask('x', now)}};
    list.move({0}, 3);
    EXPECT_EQ(titles(list.items), "bax");
}

TEST(TaskList, BlankTitleAddsNothing) {
    TaskList list = openTasks("AB");
    EXPECT_EQ(list.add("   ", now), std::nullopt);
    EXPECT_EQ(list.add("\t\n\u00a0\u2003", now), std::nullopt);
    EXPECT_EQ(list, openTasks("AB"));
}

TEST(TaskList, NewTaskIsOpenAndStartsFromNothing) {
    TaskList list;
    const auto added = list.add("  Write  ", now);
    ASSERT_TRUE(added);
    EXPECT_EQ(added->title, "Write");
    EXPECT_FALSE(added->isDone);
    EXPECT_EQ(added->createdAt, now);
    EXPECT_EQ(added->completedAt, std::nullopt);
    EXPECT_EQ(added->estimatedPomodoros, 0);
    EXPECT_EQ(added->completedPomodoros, 0);
    EXPECT_EQ(list.items, std::vector{*added});
    EXPECT_NE(list.add("Write", now)->id, added->id);
}

TEST(TaskList, NewTaskGoesBehindTheOpenOnesAndBeforeTheDoneOnes) {
    TaskList list = openTasks("AB");
    list.items.push_back(doneTask('C', now));
    list.add("D", now);
    EXPECT_EQ(titles(list.items), "ABDC");
    TaskList onlyDone{{doneTask('C', now)}};
    onlyDone.add("D", now);
    EXPECT_EQ(titles(onlyDone.items), "DC");
}

TEST(TaskList, NewTaskGoesBeforeTheFirstDoneOneOfAnyList) {
    TaskList list{{openTask('a'), doneTask('x', now), openTask('b')}};
    list.add("D", now);
    EXPECT_EQ(titles(list.items), "aDxb");
}

TEST(TaskList, WhiteSpaceWithinATitleStays) {
    TaskList list;
    EXPECT_EQ(list.add(" one\n two  three\t", now)->title, "one\n two  three");
}

TEST(TaskList, TitleIsTrimmedBeforeItIsCutTo300Characters) {
    TaskList list;
    EXPECT_EQ(list.add(std::string(301, 'x'), now)->title, std::string(300, 'x'));
    EXPECT_EQ(list.add("   " + std::string(300, 'x'), now)->title, std::string(300, 'x'));
    EXPECT_EQ(list.add(std::string(299, 'x') + " y", now)->title, std::string(299, 'x') + " ")
        << "not trimmed again";
}

TEST(TaskList, EmojiOfSeveralCodePointsIsOneCharacterOfATitle) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    TaskList list;
    EXPECT_EQ(list.add(std::string(299, 'x') + family, now)->title, std::string(299, 'x') + family);
    EXPECT_EQ(list.add(std::string(300, 'x') + family, now)->title, std::string(300, 'x'));
}

TEST(TaskList, ANewTitleIsCutLikeTheFirstOne) {
    TaskList list = openTasks("A");
    list.rename(idOf('A'), "  " + std::string(301, 'x'));
    EXPECT_EQ(list.items.front().title, std::string(300, 'x'));
}

TEST(TaskList, WrongBytesInATitleAreReplaced) {
    TaskList list;
    EXPECT_EQ(list.add(" a\xff ", now)->title, "a\ufffd");
}

TEST(TaskList, RenameCleansTheTitleAndRefusesABlankOne) {
    TaskList list = openTasks("AB");
    list.rename(idOf('A'), " New ");
    EXPECT_EQ(list.items.front().title, "New");
    list.rename(idOf('A'), "  ");
    EXPECT_EQ(list.items.front().title, "New");
    list.rename(idOf('Z'), "Other");
    EXPECT_EQ(list.items.back().title, "B");
}

} // namespace
} // namespace selvane
