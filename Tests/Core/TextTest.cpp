#include "SelvaneCore/Text.h"

#include <gtest/gtest.h>

#include <compare>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using namespace std::string_view_literals;

constexpr auto family = "👨‍👩‍👧‍👦"sv;

struct CountRow {
    const char* name;
    std::string_view text;
    std::size_t count;
};

class TextCounts : public testing::TestWithParam<CountRow> {};

TEST_P(TextCounts, UserPerceivedCharacters) {
    EXPECT_EQ(Text::count(GetParam().text), GetParam().count);
}

TEST_P(TextCounts, PrefixesGrowByOneCharacter) {
    const auto& [name, text, count] = GetParam();
    for (std::size_t length = 0; length <= count; ++length) {
        const std::string_view prefix = Text::prefix(text, length);
        EXPECT_TRUE(text.starts_with(prefix));
        EXPECT_EQ(Text::count(prefix), length);
    }
    EXPECT_EQ(Text::prefix(text, count), text);
    EXPECT_EQ(Text::prefix(text, count + 1), text);
}

TEST_P(TextCounts, CharactersCoverTheTextInOrder) {
    const auto& [name, text, count] = GetParam();
    const std::vector<std::string_view> characters = Text::characters(text);
    EXPECT_EQ(characters.size(), count);
    std::string joined;
    for (const std::string_view character : characters) {
        EXPECT_EQ(Text::count(character), 1U);
        joined += character;
    }
    EXPECT_EQ(joined, text);
}

INSTANTIATE_TEST_SUITE_P(Text, TextCounts,
                         testing::Values(CountRow{"empty", ""sv, 0}, CountRow{"ascii", "hello"sv, 5},
                                         CountRow{"lineBreakOfTwoBytes", "a\r\nb"sv, 3},
                                         CountRow{"lineBreaksApart", "\n\r\r\n\r"sv, 4},
                                         CountRow{"nulByte", "a\0b"sv, 3}, CountRow{"umlaut", "Größe"sv, 5},
                                         CountRow{"combiningAccent", "e\u0301a"sv, 2},
                                         CountRow{"family", family, 1}, CountRow{"flags", "🇩🇪🇫🇷"sv, 2},
                                         CountRow{"skinTone", "👍🏽x"sv, 2},
                                         CountRow{"hangulJamo", "\u1112\u1161\u11ab"sv, 1},
                                         CountRow{"lineBreakAfterAccent", "é\r\n"sv, 2}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Text, PrefixKeepsAWholeEmojiAtTheEnd) {
    const std::string title = std::string(299, 'a') + std::string(family);
    EXPECT_EQ(Text::count(title), 300U);
    EXPECT_EQ(Text::prefix(title, 300), title);
    EXPECT_EQ(Text::prefix(title + "b", 300), title);
    EXPECT_EQ(Text::prefix(title, 299), std::string(299, 'a'));
}

TEST(Text, LettersAndNumbers) {
    for (const auto character : {"a"sv, "Z"sv, "0"sv, "9"sv, "ß"sv, "e\u0301"sv, "日"sv, "ع"sv, "٣"sv, "½"sv,
                                 "Ⅷ"sv, "①"sv, "ª"sv, "1\ufe0f\u20e3"sv})
        EXPECT_TRUE(Text::isLetterOrNumber(character)) << character;
    for (const auto character : {""sv, "."sv, "-"sv, "_"sv, "/"sv, " "sv, "\0"sv, "\n"sv, "("sv, "+"sv, "€"sv,
                                 "\u0301"sv, "🍅"sv, family, "\u200d"sv, "\xff"sv, "\xc3"sv})
        EXPECT_FALSE(Text::isLetterOrNumber(character)) << character;
}

TEST(Text, NumbersOfEveryScript) {
    for (const auto character :
         {"0"sv, "9"sv, "٣"sv, "९"sv, "½"sv, "²"sv, "Ⅷ"sv, "①"sv, "五"sv, "1\ufe0f\u20e3"sv})
        EXPECT_TRUE(Text::isNumber(character)) << character;
    for (const auto character : {""sv, "a"sv, "日"sv, "ª"sv, "."sv, "-"sv, "+"sv, " "sv, "\0"sv, "\n"sv,
                                 "\u0301"sv, "🍅"sv, "\xff"sv, "\xc3"sv})
        EXPECT_FALSE(Text::isNumber(character)) << character;
}

struct TrimRow {
    const char* name;
    std::string_view text;
    std::string_view trimmed;
};

class TextTrims : public testing::TestWithParam<TrimRow> {};

TEST_P(TextTrims, WhiteSpaceAtBothEnds) {
    EXPECT_EQ(Text::trimmed(GetParam().text), GetParam().trimmed);
}

INSTANTIATE_TEST_SUITE_P(Text, TextTrims,
                         testing::Values(TrimRow{"nothing", ""sv, ""sv},
                                         TrimRow{"onlySpace", " \t\n\v\f\r "sv, ""sv},
                                         TrimRow{"inner", "  a  b\n"sv, "a  b"sv},
                                         TrimRow{"noBreakSpace", "\u00a0a\u00a0"sv, "a"sv},
                                         TrimRow{"nextLine", "\u0085a\u0085"sv, "a"sv},
                                         TrimRow{"ogham", "\u1680a\u1680"sv, "a"sv},
                                         TrimRow{"typographic", "\u2003a\u200a"sv, "a"sv},
                                         TrimRow{"separators", "\u2028\u2029a\u2029\u2028"sv, "a"sv},
                                         TrimRow{"ideographic", "\u3000日\u3000"sv, "日"sv},
                                         TrimRow{"onlyWideSpace", "\u3000\u3000\u2003"sv, ""sv},
                                         TrimRow{"zeroWidthStays", "\u200ba\u200b"sv, "\u200ba\u200b"sv},
                                         TrimRow{"markStays", "\ufeffa"sv, "\ufeffa"sv},
                                         TrimRow{"wrongBytesStay", "\x80 a \xe3\x80"sv, "\x80 a \xe3\x80"sv}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Text, LowerCase) {
    EXPECT_EQ(Text::lowercased("AbC xyZ @[`{ 1"), "abc xyz @[`{ 1");
    EXPECT_EQ(Text::lowercased("ÄÖÜ ẞ"), "äöü ß");
    EXPECT_EQ(Text::lowercased("ΟΔΥΣΣΕΥΣ ΣΑΣ"), "οδυσσευς σας");
    EXPECT_EQ(Text::lowercased("\u0130"), "i\u0307");
    EXPECT_EQ(Text::lowercased("日本"), "日本");
}

struct SigmaRow {
    const char* name;
    std::string_view text;
    std::string_view lowercased;
};

class SigmaTable : public testing::TestWithParam<SigmaRow> {};

TEST_P(SigmaTable, TakesItsFinalFormAtAWordsEnd) {
    EXPECT_EQ(Text::lowercased(GetParam().text), GetParam().lowercased);
}

INSTANTIATE_TEST_SUITE_P(
    Text, SigmaTable,
    testing::Values(SigmaRow{"atTheEnd", "ΑΣ"sv, "ας"sv}, SigmaRow{"atTheBeginning", "ΣΑ"sv, "σα"sv},
                    SigmaRow{"within", "ΑΣΑ"sv, "ασα"sv}, SigmaRow{"alone", "Σ"sv, "σ"sv},
                    SigmaRow{"beforeASpace", "ΑΣ Α"sv, "ας α"sv},
                    SigmaRow{"beforeAFullStop", "ΑΣ."sv, "ας."sv}, SigmaRow{"afterASpace", "Α Σ"sv, "α σ"sv},
                    SigmaRow{"twoAtTheEnd", "ΑΣΣ"sv, "ασς"sv}, SigmaRow{"behindLatinLetters", "xΣ"sv, "xς"sv},
                    SigmaRow{"smallOnesStay", "ασ ςα"sv, "ασ ςα"sv}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Text, ScalarValues) {
    EXPECT_EQ(Text::scalars(""), U"");
    EXPECT_EQ(Text::scalars("a\0b"sv), std::u32string(U"a\0b", 3));
    EXPECT_EQ(Text::scalars("e\u0301ß日🍅"), U"e\u0301ß日🍅");
    EXPECT_EQ(Text::scalars("\U0010FFFF"), U"\U0010FFFF");
    EXPECT_EQ(Text::scalars("a\x80z\xe2\x82"), U"a\uFFFDz\uFFFD");
}

TEST(Text, EqualityIsCanonical) {
    EXPECT_EQ(Text::compare("", ""), std::strong_ordering::equal);
    EXPECT_EQ(Text::compare("caf\u00e9", "cafe\u0301"), std::strong_ordering::equal);
    EXPECT_EQ(Text::compare("\uac00", "\u1100\u1161"), std::strong_ordering::equal);
    EXPECT_EQ(Text::compare("\u212b", "\u00c5"), std::strong_ordering::equal);
    EXPECT_NE(Text::compare("\ufb01", "fi"), std::strong_ordering::equal);
    EXPECT_NE(Text::compare("cafe", "caf\u00e9"), std::strong_ordering::equal);
    EXPECT_NE(Text::compare("a", "A"), std::strong_ordering::equal);
}

TEST(Text, MarksUponMarksAreComparedInTime) {
    // Canonical order would put the second kind first; sorting them takes quadratic time.
    std::string marks;
    for (int count = 0; count < 200'000; ++count)
        marks += "\u0301";
    for (int count = 0; count < 200'000; ++count)
        marks += "\u0323";
    EXPECT_EQ(Text::compare(marks, marks + "a"), std::strong_ordering::less);
    EXPECT_EQ(Text::compare(marks + "a", marks), std::strong_ordering::greater);
}

TEST(Text, OrderIsOfScalarValuesInComposedForm) {
    EXPECT_TRUE(std::is_lt(Text::compare("Z", "a")));
    EXPECT_TRUE(std::is_lt(Text::compare("a", "ab")));
    EXPECT_TRUE(std::is_lt(Text::compare("z", "\u00e9")));
    // Decomposed it would begin with an "e" and come first.
    EXPECT_TRUE(std::is_gt(Text::compare("e\u0301", "z")));
    // In UTF-16 the surrogates would come first.
    EXPECT_TRUE(std::is_lt(Text::compare("\uff5e", "\U0001F600")));
    EXPECT_TRUE(std::is_eq(Text::compare("caf\u00e9", "cafe\u0301")));
}

TEST(Text, WrongBytesBecomeTheReplacementCharacter) {
    EXPECT_EQ(Text::wellFormed("größe 👩‍👩‍👧"), "größe 👩‍👩‍👧");
    EXPECT_EQ(Text::wellFormed("a\xff"
                               "b\xc3"),
              "a\ufffdb\ufffd");
    EXPECT_EQ(Text::wellFormed("\xed\xa0\x80"), "\ufffd\ufffd\ufffd");
    EXPECT_TRUE(Text::isValid(Text::wellFormed("\xe2\x82\xc3\xa9\x80")));
}

TEST(Text, ValidText) {
    for (const std::string_view text :
         {""sv, "ascii that is long enough"sv, "a\0b"sv, "Größe 日本 🍅"sv, "\U0010FFFF\uFFFF"sv})
        EXPECT_TRUE(Text::isValid(text)) << text;
    for (const std::string_view text : {"\x80"sv, "\xff"sv, "12345678\x80"sv, "1234567\xc3"sv, "\xc0\x80"sv,
                                        "\xed\xa0\x80"sv, "\xf4\x90\x80\x80"sv, "\xe2\x82"sv})
        EXPECT_FALSE(Text::isValid(text)) << text;
}

} // namespace
} // namespace selvane
