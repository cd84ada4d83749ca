#include "SelvaneCore/JSONWriter.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace selvane {
namespace {

using test::utc;

template <typename Value>
std::string written(const Value& value) {
    JSONWriter writer;
    writer.value(value);
    return std::string(writer.finish().value());
}

TEST(JSONWriter, EmptyContainersHoldABlankLine) {
    JSONWriter writer;
    writer.beginObject();
    writer.key("array");
    writer.beginArray();
    writer.endArray();
    writer.key("object");
    writer.beginObject();
    writer.endObject();
    writer.endObject();
    EXPECT_EQ(writer.finish(), "{\n  \"array\" : [\n\n  ],\n  \"object\" : {\n\n  }\n}");
}

TEST(JSONWriter, EmptyArrayAtTheTop) {
    JSONWriter writer;
    writer.beginArray();
    writer.endArray();
    EXPECT_EQ(writer.finish(), "[\n\n]");
}

TEST(JSONWriter, EveryElementHasItsLine) {
    JSONWriter writer;
    writer.beginArray();
    writer.value(1);
    writer.value(std::string_view("two"));
    writer.beginArray();
    writer.value(true);
    writer.value(false);
    writer.endArray();
    writer.value(-3);
    writer.endArray();
    EXPECT_EQ(writer.finish(), "[\n  1,\n  \"two\",\n  [\n    true,\n    false\n  ],\n  -3\n]");
}

TEST(JSONWriter, AnyKeyIsEscapedLikeAText) {
    JSONWriter writer;
    writer.beginObject();
    writer.anyKey("");
    writer.value(1);
    writer.anyKey("a\"\n/é");
    writer.beginObject();
    writer.endObject();
    writer.key("known");
    writer.value(2);
    writer.endObject();
    EXPECT_EQ(writer.finish(), "{\n  \"\" : 1,\n  \"a\\\"\\n\\/é\" : {\n\n  },\n  \"known\" : 2\n}");
}

TEST(JSONWriter, AnyKeyMayBeOfAnyLength) {
    for (const std::size_t length : {55U, 56U, 57U, 63U, 64U, 65U, 4000U, 4096U, 100'000U}) {
        for (const char* const unit : {"x", "\x01", "/"}) {
            std::string key;
            while (key.size() < length)
                key += unit;
            JSONWriter writer;
            writer.beginObject();
            writer.anyKey(key);
            writer.value(std::string_view(key));
            writer.endObject();
            const std::string text(writer.finish().value());
            // The key and the value are the same text.
            const std::size_t half = (text.size() - std::string_view("{\n   : \n}").size()) / 2;
            EXPECT_EQ(text, "{\n  " + text.substr(4, half) + " : " + text.substr(4, half) + "\n}");
        }
    }
}

TEST(JSONWriter, AnyKeyThatIsNotUTF8Fails) {
    JSONWriter writer;
    writer.beginObject();
    writer.anyKey("\xff");
    writer.value(1);
    writer.endObject();
    EXPECT_EQ(writer.finish(), tl::unexpected(JSONWriteError::textIsNotUTF8));
}

TEST(JSONWriter, DeepNestingAndLongTextsFit) {
    JSONWriter writer;
    for (int depth = 0; depth < 500; ++depth)
        writer.beginArray();
    const std::string text(100'000, 'x');
    writer.value(std::string_view(text));
    for (int depth = 0; depth < 500; ++depth)
        writer.endArray();
    const std::string result(writer.finish().value());
    EXPECT_NE(result.find("\n" + std::string(1000, ' ') + '"' + text + "\"\n" + std::string(998, ' ') + ']'),
              std::string::npos);
    EXPECT_TRUE(result.ends_with("\n  ]\n]"));
}

struct TextRow {
    const char* name;
    std::string_view text;
    std::string_view json;
};

class JSONWriterTexts : public testing::TestWithParam<TextRow> {};

TEST_P(JSONWriterTexts, AreWritten) {
    EXPECT_EQ(written(GetParam().text), GetParam().json);
}

TEST_P(JSONWriterTexts, AreWrittenBehindPlainOnes) {
    for (std::size_t length = 1; length < 20; ++length) {
        const std::string plain(length, 'p');
        EXPECT_EQ(written(std::string_view(plain + std::string(GetParam().text) + plain)),
                  '"' + plain + std::string(GetParam().json.substr(1, GetParam().json.size() - 2)) + plain +
                      '"');
    }
}

using namespace std::string_view_literals;
INSTANTIATE_TEST_SUITE_P(
    JSON, JSONWriterTexts,
    testing::Values(TextRow{"empty", ""sv, R"("")"sv},
                    TextRow{"plain", "abc defg hijk"sv, R"("abc defg hijk")"sv},
                    TextRow{"slash", "a/b"sv, R"("a\/b")"sv}, TextRow{"quote", "\""sv, R"("\"")"sv},
                    TextRow{"backslash", "\\"sv, R"("\\")"sv},
                    TextRow{"namedControls", "\b\f\n\r\t"sv, R"("\b\f\n\r\t")"sv},
                    TextRow{"otherControls", "\0\x01\x0b\x1f"sv, R"("\u0000\u0001\u000b\u001f")"sv},
                    TextRow{"deleteIsRaw", "\x7f"sv, "\"\x7f\""sv},
                    TextRow{"otherScripts", "Größe 日本 🍅"sv, "\"Größe 日本 🍅\""sv},
                    TextRow{"separatorsAreRaw", "\u2028\u2029"sv, "\"\u2028\u2029\""sv},
                    TextRow{"lastScalar", "\U0010FFFF"sv, "\"\U0010FFFF\""sv}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(JSONWriter, TextThatIsNotUTF8Fails) {
    for (const std::string_view text : {"\xff"sv, "abc\x80"sv, "\xc3"sv, "\xc0\xaf"sv, "\xed\xa0\x80"sv,
                                        "\xf4\x90\x80\x80"sv, "plain text then \xe2\x82"sv}) {
        JSONWriter value;
        value.value(text);
        EXPECT_EQ(value.finish(), tl::unexpected(JSONWriteError::textIsNotUTF8));
    }
}

struct NumberRow {
    const char* name;
    double number;
    const char* json;
};

class JSONWriterNumbers : public testing::TestWithParam<NumberRow> {};

TEST_P(JSONWriterNumbers, AreWritten) {
    EXPECT_EQ(written(GetParam().number), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    JSON, JSONWriterNumbers,
    testing::Values(NumberRow{"zero", 0.0, "0"}, NumberRow{"negativeZero", -0.0, "0"},
                    NumberRow{"whole", 1500, "1500"}, NumberRow{"aHundredThousand", 100000, "100000"},
                    NumberRow{"negative", -25, "-25"}, NumberRow{"fraction", 1499.25, "1499.25"},
                    NumberRow{"tenth", 0.1, "0.1"}, NumberRow{"sum", 0.1 + 0.2, "0.30000000000000004"},
                    NumberRow{"microsecond", 1e-06, "1e-06"},
                    NumberRow{"pastExactIntegers", 9007199254740992.0, "9007199254740992"},
                    NumberRow{"lowestSigned", -9223372036854775808.0, "-9223372036854775808"},
                    NumberRow{"belowSigned", -9223372036854777856.0, "-9.223372036854778e+18"},
                    NumberRow{"pastSigned", 9223372036854775808.0, "9223372036854775808"},
                    NumberRow{"lastUnsigned", 18446744073709549568.0, "18446744073709549568"},
                    NumberRow{"pastUnsigned", 18446744073709551616.0, "1.8446744073709552e+19"},
                    NumberRow{"large", 1e20, "1e+20"},
                    NumberRow{"largest", std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
                    NumberRow{"smallest", std::numeric_limits<double>::denorm_min(), "5e-324"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(JSONWriter, NumbersThatAreNotFiniteFail) {
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        JSONWriter writer;
        writer.beginArray();
        writer.value(number);
        writer.value(1.0);
        writer.endArray();
        EXPECT_EQ(writer.finish(), tl::unexpected(JSONWriteError::numberIsNotFinite));
    }
}

TEST(JSONWriter, NumbersReadBackTheSame) {
    std::mt19937_64 random(7);
    for (int count = 0; count < 100'000; ++count) {
        const auto number = std::bit_cast<double>(random());
        if (!std::isfinite(number))
            continue;
        const std::string text = written(number);
        double back = 0;
        std::from_chars(text.data(), text.data() + text.size(), back);
        ASSERT_EQ(back, number) << text;
    }
}

TEST(JSONWriter, CountsOfMicrosecondsAreWrittenShortest) {
    std::mt19937_64 random(11);
    for (int count = 0; count < 300'000; ++count) {
        // Of every size, and with neighbours that only look like one.
        auto number = static_cast<double>(random() >> (random() % 64)) / 1e6;
        if (count % 3 == 0)
            number = std::nextafter(number, 0);
        if (count % 2 == 0)
            number = -number;
        if (std::trunc(number) == number)
            continue;
        char shortest[32];
        const auto end = std::to_chars(shortest, shortest + sizeof shortest, number).ptr;
        ASSERT_EQ(written(number), std::string(shortest, end));
    }
}

TEST(JSONWriter, IntegersOf64Bits) {
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

struct DateRow {
    const char* name;
    Date date;
    const char* json;
};

class JSONWriterDates : public testing::TestWithParam<DateRow> {};

TEST_P(JSONWriterDates, AreWritten) {
    EXPECT_EQ(written(GetParam().date), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    JSON, JSONWriterDates,
    testing::Values(
        DateRow{"plain", utc(2026, 3, 5, 14, 7, 9), "\"2026-03-05T14:07:09Z\""},
        DateRow{"fractionIsDropped", utc(2026, 3, 5, 14, 7, 9) + std::chrono::microseconds{999'999},
                "\"2026-03-05T14:07:09Z\""},
        DateRow{"fractionBefore1970IsFloored", utc(1970, 1, 1) - std::chrono::microseconds{1},
                "\"1969-12-31T23:59:59Z\""},
        DateRow{"leapDay", utc(2024, 2, 29, 23, 59, 59), "\"2024-02-29T23:59:59Z\""},
        DateRow{"distantPast", distantPast, "\"0001-01-01T00:00:00Z\""},
        DateRow{"first", utc(0, 1, 1), "\"0000-01-01T00:00:00Z\""},
        DateRow{"beforeTheFirst", utc(0, 1, 1) - std::chrono::microseconds{1}, "\"0000-01-01T00:00:00Z\""},
        DateRow{"earliest", Date::min(), "\"0000-01-01T00:00:00Z\""},
        DateRow{"last", utc(9999, 12, 31, 23, 59, 59), "\"9999-12-31T23:59:59Z\""},
        DateRow{"afterTheLast", utc(10000, 1, 1), "\"9999-12-31T23:59:59Z\""},
        DateRow{"latest", Date::max(), "\"9999-12-31T23:59:59Z\""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(JSONWriter, UUIDsAreUpperCase) {
    EXPECT_EQ(written(*UUID::parse("0f1e2d3c-4b5a-4978-8695-a4b3c2d1e0ff")),
              "\"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF\"");
}

} // namespace
} // namespace selvane
