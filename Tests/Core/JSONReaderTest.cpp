#include "SelvaneCore/JSONReader.h"

#include "SelvaneCore/LossyArray.h"
#include "Support/JSONText.h"
#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using test::decoded;
using namespace std::string_view_literals;
using test::utc;

template <typename Value>
bool isRefused(std::string_view text) {
    return !decoded<Value>(text).has_value();
}

struct BadRow {
    const char* name;
    std::string text;
};

class TextThatIsNoJSON : public testing::TestWithParam<BadRow> {};

TEST_P(TextThatIsNoJSON, IsRefused) {
    const auto document = JSONDocument::parse(FileContents::copy(GetParam().text));
    ASSERT_FALSE(document);
    EXPECT_FALSE(document.error().description().empty());
}

std::string repeated(std::string_view text, int count) {
    std::string result;
    while (count-- > 0)
        result += text;
    return result;
}

INSTANTIATE_TEST_SUITE_P(
    JSON, TextThatIsNoJSON,
    testing::Values(
        BadRow{"empty", ""}, BadRow{"onlyWhiteSpace", " \t\r\n"}, BadRow{"byteOrderMark", "\xEF\xBB\xBF[]"},
        BadRow{"byteOrderMarkAlone", "\xEF\xBB\xBF"}, BadRow{"wideEncoding", std::string("[\0]\0", 4)},
        BadRow{"openArray", "["}, BadRow{"openObject", "{"}, BadRow{"openText", "\"a"},
        BadRow{"trailingComma", "[1,]"}, BadRow{"missingComma", "[1 2]"}, BadRow{"missingColon", "{\"a\" 1}"},
        BadRow{"keyWithoutQuotes", "{a:1}"}, BadRow{"singleQuotes", "['a']"}, BadRow{"comment", "[1] // one"},
        BadRow{"secondValue", "[] []"}, BadRow{"closingTooMuch", "[]]"},
        BadRow{"nulBehind", std::string("[]\0", 3)}, BadRow{"nulsBehind", "[]" + std::string(4096, '\0')},
        BadRow{"onlyNuls", std::string(4096, '\0')}, BadRow{"notUTF8InText", "[\"\xff\"]"},
        BadRow{"truncatedUTF8", "[\"\xc3\"]"}, BadRow{"overlongUTF8", "[\"\xc0\xaf\"]"},
        BadRow{"surrogateInUTF8", "[\"\xed\xa0\x80\"]"}, BadRow{"highSurrogateAlone", R"(["\ud83c"])"},
        BadRow{"highSurrogateTwice", R"(["\ud83c\ud83c"])"},
        BadRow{"highSurrogateThenText", R"(["\ud83cabc"])"}, BadRow{"lowSurrogateAlone", R"(["\udf45"])"},
        BadRow{"shortEscape", R"(["\u12"])"}, BadRow{"unknownEscape", R"(["\x41"])"},
        BadRow{"lineBreakInText", "[\"a\nb\"]"}, BadRow{"nulInText", std::string("[\"a\0b\"]", 7)},
        BadRow{"notANumber", "[NaN]"}, BadRow{"infinity", "[Infinity]"},
        BadRow{"negativeInfinity", "[-Infinity]"}, BadRow{"plusSign", "[+1]"}, BadRow{"leadingZero", "[01]"},
        BadRow{"leadingPoint", "[.5]"}, BadRow{"trailingPoint", "[5.]"}, BadRow{"hexadecimal", "[0x1]"},
        BadRow{"emptyExponent", "[1e]"}, BadRow{"floatTooLarge", "[1e999]"},
        BadRow{"integerTooLarge", "[18446744073709551616]"},
        BadRow{"integerTooSmall", "[-9223372036854775809]"}, BadRow{"upperCaseTrue", "[TRUE]"},
        BadRow{"deepArrays", repeated("[", 100'000) + repeated("]", 100'000)},
        BadRow{"deepObjects", repeated("{\"a\":", 100'000) + "1" + repeated("}", 100'000)},
        BadRow{"deepAndOpen", repeated("[", 1'000'000)}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(JSONReader, NestingOfAFewHundredLevelsIsRead) {
    EXPECT_TRUE(JSONDocument::parse(FileContents::copy(repeated("[", 1000) + repeated("]", 1000))));
}

TEST(JSONReader, TextsAreUnescaped) {
    EXPECT_EQ(decoded<std::string>(R"("a\/b\"\\\b\f\n\r\t\u00e9\ud83c\udf45")"), "a/b\"\\\b\f\n\r\té🍅");
    EXPECT_EQ(decoded<std::string>(R"("\u0000")"), "\0"sv);
    EXPECT_EQ(decoded<std::string>("\"a/b\x7f\""), "a/b\x7f");
    EXPECT_EQ(decoded<std::string>("\"\""), "");
}

TEST(JSONReader, WhiteSpaceAroundTheValueIsRead) {
    EXPECT_EQ(decoded<std::int64_t>(" \t\r\n7 \t\r\n"), 7);
}

TEST(JSONReader, WholeNumbersAreIntegersHoweverTheyAreWritten) {
    for (const auto text : {"120"sv, "120.0"sv, "1.2e2"sv, "12e1"sv, "1200e-1"sv})
        EXPECT_EQ(decoded<std::int64_t>(text), 120) << text;
    EXPECT_EQ(decoded<std::int64_t>("-0"), 0);
    EXPECT_EQ(decoded<std::int64_t>("-0.0"), 0);
    EXPECT_EQ(decoded<std::int64_t>("3e9"), 3'000'000'000);
    EXPECT_EQ(decoded<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decoded<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(JSONReader, OtherNumbersAreNoIntegers) {
    for (const auto text :
         {"1.5"sv, "1e-1"sv, "1e19"sv, "9223372036854775808"sv, "-9.3e18"sv, "18446744073709551615"sv,
          "1e300"sv, "\"1\""sv, "true"sv, "null"sv, "[1]"sv, "{}"sv})
        EXPECT_TRUE(isRefused<std::int64_t>(text)) << text;
}

TEST(JSONReader, IntegersOf64Bits) {
    const auto integer = [](std::string_view text) {
        const auto document = JSONDocument::parse(FileContents::copy(text));
        return document->root().integer();
    };
    EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(integer("9223372036854775808"), std::nullopt);
    EXPECT_EQ(integer("1e18"), 1'000'000'000'000'000'000);
    EXPECT_EQ(integer("1e19"), std::nullopt);
    EXPECT_EQ(integer("-9223372036854775808.0"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(integer("9223372036854775808.0"), std::nullopt);
}

TEST(JSONReader, FloatsTakeIntegers) {
    EXPECT_EQ(decoded<double>("1500"), 1500.0);
    EXPECT_EQ(decoded<double>("18446744073709551615"), 18446744073709551615.0);
    EXPECT_EQ(decoded<double>("-7"), -7.0);
    EXPECT_EQ(decoded<double>("0.1"), 0.1);
    EXPECT_EQ(decoded<double>("1E-06"), 1e-06);
    EXPECT_EQ(decoded<Seconds>("2.5"), Seconds{2.5});
}

TEST(JSONReader, BooleansAreNoNumbersAndNumbersNoBooleans) {
    for (const auto text : {"true"sv, "false"sv}) {
        EXPECT_TRUE(isRefused<double>(text));
        EXPECT_TRUE(isRefused<std::int64_t>(text));
        EXPECT_TRUE(isRefused<std::string>(text));
    }
    for (const auto text : {"0"sv, "1"sv, "\"true\""sv, "null"sv, "[]"sv})
        EXPECT_TRUE(isRefused<bool>(text)) << text;
    EXPECT_EQ(decoded<bool>("true"), true);
    EXPECT_EQ(decoded<bool>("false"), false);
}

TEST(JSONReader, UUIDsOfEitherCaseAreRead) {
    const auto id = UUID::parse("0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF");
    EXPECT_EQ(decoded<UUID>("\"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF\""), *id);
    EXPECT_EQ(decoded<UUID>("\"0f1e2d3c-4b5a-4978-8695-a4b3c2d1e0ff\""), *id);
    for (const auto text : {"\"\""sv, "\"0F1E2D3C4B5A49788695A4B3C2D1E0FF\""sv, "7"sv, "null"sv})
        EXPECT_TRUE(isRefused<UUID>(text)) << text;
}

TEST(JSONReader, DatesOfTheOneFormAreRead) {
    EXPECT_EQ(decoded<Date>("\"2026-01-02T03:04:05Z\""), utc(2026, 1, 2, 3, 4, 5));
    EXPECT_EQ(decoded<Date>("\"1969-12-31T23:59:59Z\""), utc(1970, 1, 1) - std::chrono::seconds{1});
    EXPECT_EQ(decoded<Date>("\"2024-02-29T00:00:00Z\""), utc(2024, 2, 29));
    EXPECT_EQ(decoded<Date>("\"2000-02-29T00:00:00Z\""), utc(2000, 2, 29));
    EXPECT_EQ(decoded<Date>("\"0000-01-01T00:00:00Z\""), utc(0, 1, 1));
    EXPECT_EQ(decoded<Date>("\"9999-12-31T23:59:59Z\""), utc(9999, 12, 31, 23, 59, 59));
}

TEST(JSONReader, OtherDatesAreRefused) {
    for (const auto text :
         {"2026-01-02T03:04:05.5Z"sv,    "2026-01-02T03:04:05.000Z"sv, "2026-01-02T03:04:05"sv,
          "2026-01-02T03:04:05+00:00"sv, "2026-01-02T03:04:05+01"sv,   "2026-01-02 03:04:05Z"sv,
          "2026-01-02t03:04:05z"sv,      "2026-01-02T03:04Z"sv,        "2026-01-02"sv,
          "20260102T030405Z"sv,          "2026-1-2T3:4:5Z"sv,          "2026-00-02T03:04:05Z"sv,
          "2026-13-02T03:04:05Z"sv,      "2026-01-00T03:04:05Z"sv,     "2026-01-32T03:04:05Z"sv,
          "2026-02-29T03:04:05Z"sv,      "1900-02-29T03:04:05Z"sv,     "2026-04-31T03:04:05Z"sv,
          "2026-01-02T24:00:00Z"sv,      "2026-01-02T03:60:05Z"sv,     "2026-01-02T03:04:60Z"sv,
          "-026-01-02T03:04:05Z"sv,      "+026-01-02T03:04:05Z"sv,     "12026-01-02T03:04:05Z"sv,
          " 2026-01-02T03:04:05Z"sv,     "2026-01-02T03:04:05Z "sv,    "2026-01-0xT03:04:05Z"sv,
          "2026-01- 2T03:04:05Z"sv,      "٢026-01-02T03:04:5Z"sv,      ""sv})
        EXPECT_TRUE(isRefused<Date>('"' + std::string(text) + '"')) << text;
    EXPECT_TRUE(isRefused<Date>("1767322800"));
    EXPECT_TRUE(isRefused<Date>("null"));
}

TEST(JSONReader, MembersAreFoundInAnyOrderAndTheLastOfRepeatedOnesCounts) {
    static constexpr std::array keys{"a"sv, "b"sv, "c"sv};
    for (const auto text :
         {R"({"a":1,"b":2,"c":3})"sv, R"({"c":3,"b":2,"a":1})"sv,
          R"({"x":[{"a":9}],"b":2,"y":{},"c":3,"a":1,"z":null})"sv,
          R"({"a":"wrong","c":7,"b":8,"c":3,"a":[],"a":1,"b":2})"sv, R"({"\u0061":1,"b":2,"c":3})"sv}) {
        const auto document = JSONDocument::parse(FileContents::copy(text));
        ASSERT_TRUE(document);
        const auto members = document->root().members(keys);
        ASSERT_TRUE(members);
        for (std::size_t index = 0; index < keys.size(); ++index)
            EXPECT_EQ((*members)[index].integer(), static_cast<std::int64_t>(index) + 1) << text;
    }
}

TEST(JSONReader, AbsentMembersAreMissing) {
    static constexpr std::array keys{"a"sv, "b"sv};
    const auto document = JSONDocument::parse(FileContents::copy(R"({"A":1,"b":null,"aa":2,"":3})"));
    const auto members = document->root().members(keys);
    ASSERT_TRUE(members);
    EXPECT_TRUE((*members)[0].isMissing());
    EXPECT_FALSE((*members)[0].isNull());
    EXPECT_EQ((*members)[0].number(), std::nullopt);
    EXPECT_FALSE((*members)[1].isMissing());
    EXPECT_TRUE((*members)[1].isNull());
    EXPECT_FALSE(JSONDocument::parse(FileContents::copy("[]"))->root().members(keys));
}

TEST(JSONReader, AllMembersComeInTheOrderOfTheText) {
    const auto document =
        JSONDocument::parse(FileContents::copy(R"({"b":1,"\u0061":{"b":9},"":2,"b":[3],"c":4})"));
    ASSERT_TRUE(document);
    auto members = document->root().allMembers();
    ASSERT_TRUE(members);
    std::string keys;
    while (const auto member = members->next())
        keys.append(member->key)
            .append(member->value.integer() ? "=" + std::to_string(*member->value.integer()) : "")
            .append(";");
    EXPECT_EQ(keys, "b=1;a;=2;b;c=4;");
    EXPECT_FALSE(members->next());
}

TEST(JSONReader, OnlyObjectsHaveMembers) {
    const auto empty = JSONDocument::parse(FileContents::copy("{}"));
    auto members = empty->root().allMembers();
    ASSERT_TRUE(members);
    EXPECT_FALSE(members->next());
    for (const auto text : {"[]"sv, "null"sv, "\"{}\""sv, "7"sv})
        EXPECT_FALSE(JSONDocument::parse(FileContents::copy(text))->root().allMembers()) << text;
    EXPECT_FALSE(JSONValue().allMembers());
}

TEST(LossyArray, KeepsTheGoodElementsInOrder) {
    const auto array = decoded<LossyArray<std::int64_t>>(R"([1, null, 2, "3", 4.5, [5], {"a": 6}, true, 7])");
    ASSERT_TRUE(array);
    EXPECT_EQ(array->elements, (std::vector<std::int64_t>{1, 2, 7}));
    EXPECT_EQ(array->skipped, 6U);
}

TEST(LossyArray, OfBadElementsAsksForLittleMemory) {
    const auto array = decoded<LossyArray<std::int64_t>>("[" + repeated("\"\",", 1'000'000) + "7]");
    ASSERT_TRUE(array);
    EXPECT_EQ(array->skipped, 1'000'000U);
    EXPECT_EQ(array->elements, std::vector<std::int64_t>{7});
    EXPECT_LE(array->elements.capacity(), mostElementsReserved);
}

TEST(LossyArray, OfManyGoodElementsHasThemAll) {
    const auto array = decoded<LossyArray<std::int64_t>>("[" + repeated("1,", 100'000) + "null,7]");
    ASSERT_TRUE(array);
    EXPECT_EQ(array->elements.size(), 100'001U);
    EXPECT_EQ(array->elements.back(), 7);
    EXPECT_EQ(array->skipped, 1U);
}

TEST(LossyArray, OfNothingIsEmpty) {
    EXPECT_EQ(decoded<LossyArray<std::int64_t>>("[]"), (LossyArray<std::int64_t>{{}, 0}));
}

TEST(LossyArray, PassesOnThatThereIsNoArray) {
    for (const auto text : {"{}"sv, "1"sv, "null"sv, "\"[]\""sv})
        EXPECT_TRUE(isRefused<LossyArray<std::int64_t>>(text)) << text;
}

} // namespace
} // namespace selvane
