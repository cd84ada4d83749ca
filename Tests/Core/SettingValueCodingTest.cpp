#include "SelvaneCore/SettingValueCoding.h"

#include "Support/JSONText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

namespace selvane {
namespace {

using test::decoded;
using test::encoded;
using namespace std::string_view_literals;
using Texts = SettingValue::Texts;

const SettingValues everyKind{{"autoStartBreaks", {true}},
                              {"dailyGoalMinutes", {std::int64_t{120}}},
                              {"distractingSites", {Texts{"a.example", "b/c"}}},
                              {"focusSymbol", {std::string("eye")}},
                              {"ignoredCalendarIDs", {Texts{}}},
                              {"musicVolume", {0.6}}};

constexpr std::string_view goldenValues = R"({
  "autoStartBreaks" : {
    "type" : "bool",
    "value" : true
  },
  "dailyGoalMinutes" : {
    "type" : "int",
    "value" : 120
  },
  "distractingSites" : {
    "type" : "strings",
    "value" : [
      "a.example",
      "b\/c"
    ]
  },
  "focusSymbol" : {
    "type" : "string",
    "value" : "eye"
  },
  "ignoredCalendarIDs" : {
    "type" : "strings",
    "value" : [

    ]
  },
  "musicVolume" : {
    "type" : "double",
    "value" : 0.6
  }
})";

TEST(SettingValueCoding, Golden) {
    EXPECT_EQ(encoded(everyKind), goldenValues);
    EXPECT_EQ(decoded<SettingValues>(goldenValues), everyKind);
}

TEST(SettingValueCoding, OneSettingIsAnObjectOfItsTypeAndItsValue) {
    JSONWriter writer;
    encode(writer, SettingValue{std::int64_t{120}});
    EXPECT_EQ(writer.finish(), "{\n  \"type\" : \"int\",\n  \"value\" : 120\n}");
}

TEST(SettingValueCoding, NoSettingsAreAnEmptyObject) {
    EXPECT_EQ(encoded(SettingValues{}), "{\n\n}");
    EXPECT_EQ(decoded<SettingValues>("{}"), SettingValues{});
}

TEST(SettingValueCoding, KeysAreEscapedAndStandInTheOrderOfTheirBytes) {
    const SettingValues values{
        {"", {true}}, {"a/b", {true}}, {"Z", {true}}, {"\"\\\n", {true}}, {"é", {true}}};
    const std::string text = encoded(values);
    std::size_t from = 0;
    for (const auto key :
         {"  \"\" : {"sv, R"(  "\"\\\n" : {)"sv, "  \"Z\" : {"sv, R"(  "a\/b" : {)"sv, "  \"é\" : {"sv}) {
        const std::size_t at = text.find(key);
        ASSERT_NE(at, std::string::npos) << key;
        EXPECT_GE(at, from) << key;
        from = at;
    }
    EXPECT_EQ(decoded<SettingValues>(text), values);
}

struct ValueRow {
    const char* name;
    std::string_view text;
    SettingValue value;
};

class GoodSettings : public testing::TestWithParam<ValueRow> {};

TEST_P(GoodSettings, AreRead) {
    EXPECT_EQ(decoded<SettingValue>(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    SettingValueCoding, GoodSettings,
    testing::Values(
        ValueRow{"true", R"({"type":"bool","value":true})", {true}},
        ValueRow{"false", R"({"type":"bool","value":false})", {false}},
        ValueRow{"valueFirst", R"({"value":7,"type":"int"})", {std::int64_t{7}}},
        ValueRow{"integerOfPlainDigits", R"({"type":"int","value":-3})", {std::int64_t{-3}}},
        ValueRow{"integerWithAWholeFraction", R"({"type":"int","value":5.0})", {std::int64_t{5}}},
        ValueRow{"integerWithAnExponent", R"({"type":"int","value":12e1})", {std::int64_t{120}}},
        ValueRow{"largestInteger",
                 R"({"type":"int","value":9223372036854775807})",
                 {std::numeric_limits<std::int64_t>::max()}},
        ValueRow{"smallestInteger",
                 R"({"type":"int","value":-9223372036854775808})",
                 {std::numeric_limits<std::int64_t>::min()}},
        ValueRow{"float", R"({"type":"double","value":0.25})", {0.25}},
        ValueRow{"floatOfPlainDigits", R"({"type":"double","value":1})", {1.0}},
        ValueRow{"text", R"({"type":"string","value":"a\/b"})", {std::string("a/b")}},
        ValueRow{"emptyText", R"({"type":"string","value":""})", {std::string()}},
        ValueRow{"texts", R"({"type":"strings","value":["b","a","b"]})", {Texts{"b", "a", "b"}}},
        ValueRow{"noTexts", R"({"type":"strings","value":[]})", {Texts{}}},
        ValueRow{"extraKeys", R"({"type":"int","unit":"minutes","value":1})", {std::int64_t{1}}},
        ValueRow{"repeatedKeys", R"({"type":"bool","value":"x","type":"int","value":1})", {std::int64_t{1}}}),
    [](const auto& test) { return std::string(test.param.name); });

struct BadRow {
    const char* name;
    std::string_view text;
    std::string_view problem;
};

class BadSettings : public testing::TestWithParam<BadRow> {};

TEST_P(BadSettings, AreRefused) {
    const auto setting = decoded<SettingValue>(GetParam().text);
    ASSERT_FALSE(setting);
    EXPECT_EQ(setting.error(), GetParam().problem);
}

TEST_P(BadSettings, FailAllSettingsUnderTheirKey) {
    const auto settings = decoded<SettingValues>(
        std::string(R"({"a":{"type":"int","value":1},"bad":)").append(GetParam().text).append("}"));
    ASSERT_FALSE(settings);
    EXPECT_TRUE(settings.error().starts_with("\"bad\": ")) << settings.error();
}

INSTANTIATE_TEST_SUITE_P(
    SettingValueCoding, BadSettings,
    testing::Values(
        BadRow{"unknownType", R"({"type":"date","value":1})", "Unknown setting type date"},
        BadRow{"emptyType", R"({"type":"","value":1})", "Unknown setting type "},
        BadRow{"typeInOtherCase", R"({"type":"Int","value":1})", "Unknown setting type Int"},
        BadRow{"typeOfManyBytes", R"({"type":"strings of a length that fits no small buffer"})",
               "Unknown setting type strings of a length that fits no small buffer"},
        BadRow{"unknownTypeWithoutValue", R"({"type":"data"})", "Unknown setting type data"},
        BadRow{"noType", R"({"value":1})", "without a setting type"},
        BadRow{"typeNumber", R"({"type":1,"value":1})", "without a setting type"},
        BadRow{"typeNull", R"({"type":null,"value":1})", "without a setting type"},
        BadRow{"noValue", R"({"type":"int"})", "missing"},
        BadRow{"valueNull", R"({"type":"string","value":null})", "not a text"},
        BadRow{"numberForBoolean", R"({"type":"bool","value":1})", "not a boolean"},
        BadRow{"textForBoolean", R"({"type":"bool","value":"true"})", "not a boolean"},
        BadRow{"booleanForInteger", R"({"type":"int","value":true})", "not a whole number of 64 bits"},
        BadRow{"fractionForInteger", R"({"type":"int","value":1.5})", "not a whole number of 64 bits"},
        BadRow{"tooLargeForInteger", R"({"type":"int","value":9223372036854775808})",
               "not a whole number of 64 bits"},
        BadRow{"textForInteger", R"({"type":"int","value":"1"})", "not a whole number of 64 bits"},
        BadRow{"booleanForFloat", R"({"type":"double","value":false})", "not a number"},
        BadRow{"textForFloat", R"({"type":"double","value":"0.5"})", "not a number"},
        BadRow{"numberForText", R"({"type":"string","value":1})", "not a text"},
        BadRow{"textForTexts", R"({"type":"strings","value":"a"})", "not an array"},
        BadRow{"numberAmongTexts", R"({"type":"strings","value":["a",1]})", "not a text"},
        BadRow{"nullAmongTexts", R"({"type":"strings","value":[null]})", "not a text"},
        BadRow{"bareValue", "true", "not an object"}, BadRow{"null", "null", "not an object"},
        BadRow{"array", R"(["int",1])", "not an object"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SettingValueCoding, AnUnknownTypeIsToldWithItsName) {
    const auto settings = decoded<SettingValues>(R"({"when":{"type":"date","value":0}})");
    EXPECT_EQ(settings, tl::unexpected(std::string("\"when\": Unknown setting type date")));
}

TEST(SettingValueCoding, OfRepeatedKeysOnlyTheLastIsLookedAt) {
    EXPECT_EQ(decoded<SettingValues>(
                  R"({"b":{"type":"no"},"a":{"type":"int","value":1},"b":{"type":"int","value":2}})"),
              (SettingValues{{"a", {std::int64_t{1}}}, {"b", {std::int64_t{2}}}}));
    EXPECT_FALSE(decoded<SettingValues>(R"({"b":{"type":"int","value":2},"b":{"type":"no"}})"));
}

TEST(SettingValueCoding, OnlyAnObjectHoldsSettings) {
    for (const auto text : {"[]"sv, "null"sv, "1"sv, "\"{}\""sv, "true"sv})
        EXPECT_FALSE(decoded<SettingValues>(text)) << text;
}

TEST(SettingValueCoding, WhatHasNoFormFailsInBothWriters) {
    const auto outcomes = [](const SettingValues& values) {
        JSONWriter writer;
        encode(writer, values);
        JSONChecker checker;
        encode(checker, values);
        EXPECT_FALSE(writer.finish());
        EXPECT_FALSE(checker.outcome());
        EXPECT_EQ(writer.finish().error(), checker.outcome().error());
        return checker.outcome().error();
    };
    EXPECT_EQ(outcomes({{"\xff", {true}}}), JSONWriteError::textIsNotUTF8);
    EXPECT_EQ(outcomes({{"a", {std::string("\xc3")}}}), JSONWriteError::textIsNotUTF8);
    EXPECT_EQ(outcomes({{"a", {Texts{"good", "\x80"}}}}), JSONWriteError::textIsNotUTF8);
    EXPECT_EQ(outcomes({{"a", {std::numeric_limits<double>::quiet_NaN()}}}),
              JSONWriteError::numberIsNotFinite);
    EXPECT_EQ(outcomes({{"a", {std::numeric_limits<double>::infinity()}}}),
              JSONWriteError::numberIsNotFinite);

    JSONChecker checker;
    encode(checker, everyKind);
    EXPECT_TRUE(checker.outcome());
}

} // namespace
} // namespace selvane
