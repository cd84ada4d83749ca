#include "SelvaneCore/Changelog.h"

#include "SelvaneCore/ModelsCoding.h"
#include "Support/LocalTime.h"
#include "Support/RowName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using namespace std::string_literals;
using test::local;
using test::utc;
using test::zone;

struct VersionRow {
    const char* name;
    std::string a;
    std::string b;
    std::strong_ordering order;
};

class Versions : public testing::TestWithParam<VersionRow> {};

TEST_P(Versions, AreOrderedByTheirNumbers) {
    const auto& [name, a, b, order] = GetParam();
    EXPECT_TRUE(Changelog::compare(a, b) == order);
    EXPECT_TRUE(Changelog::compare(b, a) == 0 <=> order);
    EXPECT_TRUE(std::is_eq(Changelog::compare(a, a)));
    EXPECT_TRUE(std::is_eq(Changelog::compare(b, b)));
}

constexpr auto less = std::strong_ordering::less;
constexpr auto equal = std::strong_ordering::equal;
constexpr auto greater = std::strong_ordering::greater;

INSTANTIATE_TEST_SUITE_P(
    Changelog, Versions,
    testing::Values(
        VersionRow{"same", "1.2.3", "1.2.3", equal},
        VersionRow{"firstNumberDecides", "2.0", "1.9.9", greater},
        VersionRow{"numbersAreNoText", "1.9", "1.10", less}, VersionRow{"missingIsZero", "1.0", "1", equal},
        VersionRow{"longer", "1.2.1", "1.2", greater}, VersionRow{"zerosBehind", "1.2.0.0.0", "1.2", equal},
        VersionRow{"nothingIsZero", "", "0.0", equal}, VersionRow{"nothingIsTheLeast", "", "0.1", less},
        VersionRow{"nothingIsMoreThanANegative", "", "-1", greater},
        VersionRow{"emptyPiecesPlayNoPart", "1..2", "1.2", equal},
        VersionRow{"dotsAtTheEnds", "..1.2..", "1.2", equal}, VersionRow{"dotsAlone", "...", "", equal},
        VersionRow{"zerosBefore", "01.002", "1.2", equal},
        VersionRow{"suffixMakesZero", "1.2-beta", "1.0", equal},
        VersionRow{"suffixMakesLess", "1.2-beta", "1.1", less}, VersionRow{"letterBefore", "v2.1", "1", less},
        VersionRow{"words", "one.two", "0", equal}, VersionRow{"plusSign", "1.+2", "1.2", equal},
        VersionRow{"minusSign", "1.-2", "1.0", less}, VersionRow{"minusZero", "-0", "0", equal},
        VersionRow{"signsAlone", "+.-", "0", equal}, VersionRow{"twoSigns", "+-1", "0", equal},
        VersionRow{"twoPlusSigns", "++1", "0", equal}, VersionRow{"twoMinusSigns", "--1", "0", equal},
        VersionRow{"minusPlus", "-+1", "0", equal}, VersionRow{"blankBefore", " 1", "0", equal},
        VersionRow{"blankBehind", "1 ", "0", equal}, VersionRow{"lineBreak", "1.2\n", "1.0", equal},
        VersionRow{"nulByte", "1\0"s, "0", equal}, VersionRow{"hexadecimal", "0x10", "0", equal},
        VersionRow{"fraction", "1,5", "0", equal}, VersionRow{"exponent", "1e3", "0", equal},
        VersionRow{"digitsOfOtherScripts", "\u0661", "0", equal},
        VersionRow{"wrongBytes", "\xff.1", "0.1", equal},
        VersionRow{"largestNumber", "9223372036854775807", "9223372036854775806", greater},
        VersionRow{"smallestNumber", "-9223372036854775808", "9223372036854775807", less},
        VersionRow{"numberTooLarge", "9223372036854775808", "0", equal},
        VersionRow{"numberTooSmall", "-9223372036854775809", "0", equal},
        VersionRow{"largestNumberWithZeros", "+0009223372036854775807", "9223372036854775807", equal}),
    test::rowName);

TEST(Changelog, VersionsOfAnyLengthAreCompared) {
    std::string dots(1'000'000, '.');
    EXPECT_TRUE(std::is_eq(Changelog::compare(dots, "")));
    std::string zeros;
    while (zeros.size() < 1'000'000)
        zeros += "0.";
    EXPECT_TRUE(std::is_eq(Changelog::compare(zeros, "")));
    EXPECT_TRUE(std::is_lt(Changelog::compare(zeros, zeros + "1")));
    EXPECT_TRUE(std::is_eq(Changelog::compare(std::string(1'000'000, '9'), "0")));
}

std::string encoded(const std::vector<ChangelogEntry>& entries) {
    JSONWriter writer;
    encode(writer, entries);
    return std::string(writer.finish().value());
}

/// The versions in the order in which `data` decodes; what is wrong with it where it doesn't.
tl::expected<std::vector<std::string>, std::string> versions(std::string_view data) {
    const auto entries = Changelog::decode(data);
    if (!entries)
        return tl::unexpected(entries.error().description());
    std::vector<std::string> result;
    for (const ChangelogEntry& entry : *entries)
        result.push_back(entry.version);
    return result;
}

/// A file with entries of these versions; each date tells the place in the file.
std::string file(const std::vector<std::string>& fileVersions) {
    std::vector<ChangelogEntry> entries;
    for (const std::string& version : fileVersions)
        entries.push_back({version, std::to_string(entries.size())});
    return encoded(entries);
}

constexpr std::string_view golden = R"([
  {
    "date" : "2026-03-05",
    "fixed" : [

    ],
    "improved" : [
      "Faster \/ smaller",
      "Größer"
    ],
    "new" : [
      "Notes"
    ],
    "version" : "1.2"
  },
  {
    "date" : "",
    "fixed" : [

    ],
    "improved" : [

    ],
    "new" : [

    ],
    "version" : ""
  }
])";

const std::vector<ChangelogEntry> goldenEntries{
    {"1.2", "2026-03-05", {"Notes"}, {"Faster / smaller", "Größer"}, {}}, {"", ""}};

TEST(ChangelogCoding, AllKeysAreAlwaysWritten) {
    EXPECT_EQ(encoded(goldenEntries), golden);
}

TEST(ChangelogCoding, WhatWasWrittenIsRead) {
    EXPECT_EQ(Changelog::decode(golden).value(), goldenEntries);
    EXPECT_EQ(Changelog::decode("[]").value(), std::vector<ChangelogEntry>{});
}

TEST(ChangelogCoding, ListsThatAreMissingOrNullAreEmpty) {
    EXPECT_EQ(Changelog::decode(R"([{"version": "1.0", "date": "d"}])").value(),
              (std::vector<ChangelogEntry>{{"1.0", "d"}}));
    EXPECT_EQ(Changelog::decode(
                  R"([{"new": null, "improved": null, "fixed": ["a"], "version": "1.0", "date": "d"}])")
                  .value(),
              (std::vector<ChangelogEntry>{{"1.0", "d", {}, {}, {"a"}}}));
}

TEST(ChangelogCoding, OtherKeysArePassedOver) {
    EXPECT_EQ(Changelog::decode(R"([{"version": "1.0", "date": "d", "New": ["a"], "id": 3}])").value(),
              (std::vector<ChangelogEntry>{{"1.0", "d"}}));
}

TEST(ChangelogCoding, NothingIsLeftOfAnEntryThatWasThereBefore) {
    ChangelogEntry entry{"0.1", "old", {"a"}, {"b"}, {"c"}};
    const auto document = JSONDocument::parse(FileContents::copy(R"({"version": "1.0", "date": "d"})"));
    ASSERT_TRUE(document);
    ASSERT_TRUE(decode(document->root(), entry));
    EXPECT_EQ(entry, (ChangelogEntry{"1.0", "d"}));
}

struct BadRow {
    const char* name;
    std::string data;
    /// Empty where the parser has words of its own.
    std::string problem;
};

class FilesThatAreNoChangelog : public testing::TestWithParam<BadRow> {};

TEST_P(FilesThatAreNoChangelog, AreRefusedAsAWhole) {
    const auto result = versions(GetParam().data);
    ASSERT_FALSE(result);
    if (GetParam().problem.empty())
        EXPECT_NE(result.error(), "");
    else
        EXPECT_EQ(result.error(), GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Changelog, FilesThatAreNoChangelog,
    testing::Values(
        BadRow{"nothing", "", ""}, BadRow{"noJSON", "[", ""}, BadRow{"textBehind", "[] a", ""},
        BadRow{"byteOrderMark", "\xEF\xBB\xBF[]", ""}, BadRow{"wrongBytes", "[\"\xff\"]", ""},
        BadRow{"object", "{}", "not an array"}, BadRow{"null", "null", "not an array"},
        BadRow{"entryIsAText", R"(["1.0"])", "not an object"},
        BadRow{"noDate", R"([{"version": "1.0"}])", "\"date\": missing"},
        BadRow{"noVersion", R"([{"date": "2026-03-05"}])", "\"version\": missing"},
        BadRow{"nullDate", R"([{"version": "1.0", "date": null}])", "\"date\": not a text"},
        BadRow{"numberAsVersion", R"([{"version": 1.0, "date": "d"}])", "\"version\": not a text"},
        BadRow{"textAsList", R"([{"version": "1", "date": "d", "new": "a"}])", "\"new\": not an array"},
        BadRow{"numberInAList", R"([{"version": "1", "date": "d", "fixed": ["a", 1]}])",
               "\"fixed\": not a text"},
        BadRow{"nullInAList", R"([{"version": "1", "date": "d", "improved": [null]}])",
               "\"improved\": not a text"},
        BadRow{"oneBadEntryAmongGoodOnes", R"([{"version": "1", "date": "d"}, {"version": "2"}])",
               "\"date\": missing"}),
    test::rowName);

TEST(Changelog, TheNewestVersionComesFirst) {
    using List = std::vector<std::string>;
    EXPECT_EQ(versions(file({"1.0", "1.2", "1.1"})), (List{"1.2", "1.1", "1.0"}));
    EXPECT_EQ(versions(file({"1.9", "1.10", "beta", "2"})), (List{"2", "1.10", "1.9", "beta"}));
}

TEST(Changelog, EqualVersionsKeepTheirOrder) {
    std::vector<std::string> fileVersions;
    for (int round = 0; round < 20; ++round) {
        for (const char* const version : {"1", "2.0", "1.0", "2", "1.0.0"})
            fileVersions.emplace_back(version);
    }
    const auto entries = Changelog::decode(file(fileVersions)).value();
    ASSERT_EQ(entries.size(), fileVersions.size());
    EXPECT_TRUE(std::ranges::is_sorted(entries, [](const ChangelogEntry& left, const ChangelogEntry& right) {
        const auto order = Changelog::compare(left.version, right.version);
        return std::is_gt(order) || (std::is_eq(order) && std::stoi(left.date) < std::stoi(right.date));
    }));
}

TEST(Changelog, EntriesAfterAVersion) {
    const std::vector<ChangelogEntry> all{{"1.2", ""}, {"1.1", ""}, {"1.0", ""}};
    EXPECT_EQ(Changelog::entries(all, "1.1"), (std::vector<ChangelogEntry>{{"1.2", ""}}));
    EXPECT_EQ(Changelog::entries(all, "1.1.0"), (std::vector<ChangelogEntry>{{"1.2", ""}}));
    EXPECT_EQ(Changelog::entries(all, ""), all);
    EXPECT_EQ(Changelog::entries(all, "2"), std::vector<ChangelogEntry>{});
    EXPECT_EQ(Changelog::entries({}, "1"), std::vector<ChangelogEntry>{});
}

TEST(Changelog, WithoutAVersionAllEntriesStayAsTheyAre) {
    const std::vector<ChangelogEntry> unsorted{{"1.0", ""}, {"-1", ""}, {"1.2", ""}, {"", ""}};
    EXPECT_EQ(Changelog::entries(unsorted, std::nullopt), unsorted);
    EXPECT_EQ(Changelog::entries(unsorted, "0"), (std::vector<ChangelogEntry>{{"1.0", ""}, {"1.2", ""}}));
}

struct DateRow {
    const char* name;
    std::string date;
    std::optional<Date> noon;
};

class ReleaseDates : public testing::TestWithParam<DateRow> {};

TEST_P(ReleaseDates, AreNoonOfTheDay) {
    const ChangelogEntry entry{"1.0", GetParam().date};
    EXPECT_EQ(entry.releaseDate(Calendar::utc()), GetParam().noon);
}

INSTANTIATE_TEST_SUITE_P(
    Changelog, ReleaseDates,
    testing::Values(
        DateRow{"aDay", "2026-03-05", utc(2026, 3, 5, 12)},
        DateRow{"withoutZeros", "2026-3-5", utc(2026, 3, 5, 12)},
        DateRow{"leapDay", "2028-02-29", utc(2028, 2, 29, 12)},
        DateRow{"earlyYear", "1-1-1", utc(1, 1, 1, 12)},
        DateRow{"piecesThatAreNoNumbersAreDropped", "v-2026-03-05-beta", utc(2026, 3, 5, 12)},
        DateRow{"emptyPiecesAreDropped", "--2026--03-05-", utc(2026, 3, 5, 12)},
        DateRow{"plusSigns", "+2026-+03-+05", utc(2026, 3, 5, 12)},
        DateRow{"numberTooLargeIsNone", "99999999999999999999-2026-03-05", utc(2026, 3, 5, 12)},
        DateRow{"dayThatDoesNotExist", "2026-02-30", utc(2026, 3, 2, 12)},
        DateRow{"monthThatDoesNotExist", "2026-13-05", utc(2027, 1, 5, 12)},
        DateRow{"zeros", "2026-00-00", utc(2025, 11, 30, 12)}, DateRow{"nothing", "", {}},
        DateRow{"dashesAlone", "--", {}}, DateRow{"noDay", "2026-03", {}},
        DateRow{"fourNumbers", "2026-03-05-1", {}}, DateRow{"dayIsNoNumber", "2026-03-5th", {}},
        DateRow{"blanks", "2026-03- 5", {}}, DateRow{"otherSeparator", "2026/03/05", {}},
        DateRow{"withATime", "2026-03-05T12:00:00Z", {}}, DateRow{"otherDigits", "\u0662-03-05", {}},
        DateRow{"nulByte", "2026-03-05\0"s, {}}, DateRow{"yearBeyondInstants", "300000-01-01", {}},
        DateRow{"yearFarBeyond", "2147483647-12-31", {}}, DateRow{"yearBeyond32Bits", "2147483648-01-01", {}},
        DateRow{"everythingBeyond32Bits", "9223372036854775807-9223372036854775807-9223372036854775807", {}},
        DateRow{"monthsBeyondInstants", "2026-2147483647-01", {}},
        DateRow{"daysBeyondInstants", "2026-01-2147483647", {}}),
    test::rowName);

TEST(Changelog, NoonIsThatOfTheZone) {
    for (const char* const name :
         {"UTC", "Europe/Berlin", "America/New_York", "Pacific/Apia", "Asia/Kolkata"}) {
        const Calendar calendar = zone(name);
        const ChangelogEntry entry{"1.0", "2026-03-05"};
        EXPECT_EQ(entry.releaseDate(calendar), local(calendar, 2026, 3, 5, 12)) << name;
    }
}

TEST(Changelog, ANoonThatIsTheDistantPastIsADateToo) {
    const ChangelogEntry entry{"1.0", "1-1-1"};
    EXPECT_EQ(entry.releaseDate(zone("Etc/GMT-12")), distantPast);
}

} // namespace
} // namespace selvane
