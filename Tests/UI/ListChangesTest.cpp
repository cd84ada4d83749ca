#include "Selvane/UI/Tasks/ListChanges.h"

#include "Support/Dice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using test::Dice;

using ListChanges::Steps;
using testing::SizeIs;

using IDs = std::vector<UUID>;

UUID idOf(std::size_t number) {
    UUID::Bytes bytes{};
    for (std::size_t byte = 0; byte < 8; ++byte)
        bytes[15 - byte] = static_cast<std::uint8_t>(number >> (8 * byte));
    return UUID(bytes);
}

/// A list told by a letter an item.
IDs idsOf(std::string_view letters) {
    IDs ids;
    for (const char letter : letters)
        ids.push_back(idOf(static_cast<unsigned char>(letter)));
    return ids;
}

/// The steps in words: "-2", "-2+3" for three items, "0>2", "0+3>2", "+1", "+1+4".
std::string described(const Steps& steps) {
    std::string text;
    const auto range = [](std::size_t first, std::size_t count) {
        return std::to_string(first) + (count == 1 ? "" : "+" + std::to_string(count));
    };
    for (const auto& removal : steps.removals)
        text += " -" + range(removal.first, removal.count);
    for (const auto& move : steps.moves)
        text += " " + range(move.first, move.count) + ">" + std::to_string(move.destination);
    for (const auto& insertion : steps.insertions)
        text += " +" + range(insertion.first, insertion.count);
    return text.empty() ? text : text.substr(1);
}

auto at(IDs& ids, std::size_t index) {
    return ids.begin() + static_cast<std::ptrdiff_t>(index);
}

/// What a view does that knows only the steps and the items that come.
IDs applied(const Steps& steps, IDs list, const IDs& after) {
    for (const auto& [first, count] : steps.removals) {
        EXPECT_LE(first + count, list.size());
        list.erase(at(list, first), at(list, first + count));
    }
    for (const auto& [first, count, destination] : steps.moves) {
        EXPECT_LE(first + count, list.size());
        EXPECT_LE(destination + count, list.size());
        EXPECT_NE(first, destination);
        const IDs run(at(list, first), at(list, first + count));
        list.erase(at(list, first), at(list, first + count));
        list.insert(at(list, destination), run.begin(), run.end());
    }
    for (const auto& [first, count] : steps.insertions) {
        EXPECT_LE(first, list.size());
        EXPECT_LE(first + count, after.size());
        list.insert(at(list, first), after.begin() + static_cast<std::ptrdiff_t>(first),
                    after.begin() + static_cast<std::ptrdiff_t>(first + count));
    }
    return list;
}

struct ChangeRow {
    const char* name;
    const char* before;
    const char* after;
    const char* steps;
};

class ListChangesTable : public testing::TestWithParam<ChangeRow> {};

TEST_P(ListChangesTable, TellsFewSteps) {
    const IDs before = idsOf(GetParam().before);
    const IDs after = idsOf(GetParam().after);
    const Steps steps = ListChanges::between(before, after);
    EXPECT_EQ(described(steps), GetParam().steps);
    EXPECT_EQ(applied(steps, before, after), after);
}

INSTANTIATE_TEST_SUITE_P(
    ListChanges, ListChangesTable,
    testing::Values(
        ChangeRow{"bothEmpty", "", "", ""}, ChangeRow{"same", "ABC", "ABC", ""},
        ChangeRow{"filled", "", "ABC", "+0+3"}, ChangeRow{"emptied", "ABC", "", "-0+3"},
        ChangeRow{"replaced", "AB", "CDE", "-0+2 +0+3"}, ChangeRow{"appended", "AB", "ABC", "+2"},
        ChangeRow{"putFirst", "AB", "CAB", "+0"}, ChangeRow{"twoRunsIn", "AB", "CDAEB", "+0+2 +3"},
        ChangeRow{"removedFirst", "ABC", "BC", "-0"},
        ChangeRow{"twoRunsOutTheLastFirst", "ABCDE", "BD", "-4 -2 -0"},
        ChangeRow{"runOut", "ABCDE", "AE", "-1+3"}, ChangeRow{"firstToTheEnd", "ABCD", "BCDA", "0>3"},
        ChangeRow{"lastToTheFront", "ABCD", "DABC", "3>0"}, ChangeRow{"oneDown", "ABCDE", "ACDBE", "1>3"},
        ChangeRow{"oneUp", "ABCDE", "ADBCE", "3>1"}, ChangeRow{"runDown", "ABCDEFG", "CDEFGAB", "0+2>5"},
        ChangeRow{"runUp", "ABCDEFG", "FGABCDE", "5+2>0"},
        ChangeRow{"gatheredDown", "ABCDEFG", "BDEFGAC", "0>6 1>6"},
        ChangeRow{"parted", "ABCDEFG", "CADEFBG", "0>2 0>5"},
        ChangeRow{"allAtOnce", "ABCDEF", "XCDAFY", "-4 -1 0>2 +0 +5"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(EqualIDs, ListChangesTable,
                         testing::Values(ChangeRow{"stay", "AABA", "AABA", ""},
                                         ChangeRow{"oneMore", "AAB", "AAAB", "+2"},
                                         ChangeRow{"oneLessTheLast", "ABA", "AB", "-2"},
                                         ChangeRow{"allGo", "ABAA", "B", "-2+2 -0"},
                                         ChangeRow{"onlyEqualOnes", "AAAA", "AA", "-2+2"}),
                         [](const auto& test) { return std::string(test.param.name); });

/// Items that both lists have, each as often as in the list that has it less often.
std::size_t keptCount(const IDs& before, const IDs& after) {
    std::size_t kept = 0;
    std::map<UUID, std::size_t> waiting;
    for (const UUID& id : before)
        ++waiting[id];
    for (const UUID& id : after) {
        if (std::size_t& left = waiting[id]; left > 0) {
            --left;
            ++kept;
        }
    }
    return kept;
}

/// The length of a longest common subsequence, by the table of all beginnings. For lists without equal ids
/// these are the items that need not move.
std::size_t longestCommon(const IDs& before, const IDs& after) {
    std::vector<std::size_t> row(after.size() + 1, 0);
    for (const UUID& id : before) {
        std::size_t diagonal = 0;
        for (std::size_t index = 0; index < after.size(); ++index) {
            const std::size_t above = row[index + 1];
            row[index + 1] = id == after[index] ? diagonal + 1 : std::max(above, row[index]);
            diagonal = above;
        }
    }
    return row.back();
}

template <typename Runs>
std::size_t total(const Runs& runs) {
    std::size_t total = 0;
    for (const auto& run : runs)
        total += run.count;
    return total;
}

IDs randomList(Dice& dice, std::size_t longest, std::size_t letters) {
    IDs ids(dice.below(longest + 1));
    std::ranges::generate(ids, [&] { return idOf(dice.below(letters)); });
    return ids;
}

IDs withoutEqualOnes(IDs ids) {
    IDs distinct;
    for (const UUID& id : ids) {
        if (std::ranges::find(distinct, id) == distinct.end())
            distinct.push_back(id);
    }
    return distinct;
}

TEST(ListChangesRandom, StepsLeadToTheListAndKeepWhatBothHave) {
    Dice dice(1);
    for (int round = 0; round < 20'000; ++round) {
        const std::size_t letters = 1 + dice.below(20);
        const IDs before = randomList(dice, 14, letters);
        const IDs after = randomList(dice, 14, letters);
        const Steps steps = ListChanges::between(before, after);
        ASSERT_EQ(applied(steps, before, after), after) << "round " << round;
        ASSERT_EQ(total(steps.removals), before.size() - keptCount(before, after)) << "round " << round;
        ASSERT_EQ(total(steps.insertions), after.size() - keptCount(before, after)) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

TEST(ListChangesRandom, NoFewerItemsCouldMove) {
    Dice dice(2);
    for (int round = 0; round < 20'000; ++round) {
        const std::size_t letters = 1 + dice.below(24);
        const IDs before = withoutEqualOnes(randomList(dice, 20, letters));
        const IDs after = withoutEqualOnes(randomList(dice, 20, letters));
        const Steps steps = ListChanges::between(before, after);
        ASSERT_EQ(total(steps.moves), keptCount(before, after) - longestCommon(before, after))
            << "round " << round;
        ASSERT_EQ(applied(steps, before, after), after) << "round " << round;
    }
}

TEST(ListChanges, LongReversedListMovesAllItemsButOne) {
    constexpr std::size_t size = 200'000;
    IDs before;
    for (std::size_t number = 0; number < size; ++number)
        before.push_back(idOf(number));
    const IDs reversed(before.rbegin(), before.rend());
    const Steps steps = ListChanges::between(before, reversed);
    EXPECT_EQ(total(steps.moves), size - 1);
    EXPECT_EQ(ListChanges::between(IDs(size, idOf(1)), IDs(size, idOf(1))), Steps{});
}

} // namespace
} // namespace selvane
