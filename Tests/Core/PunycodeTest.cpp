#include "SelvaneCore/Punycode.h"

#include "SelvaneCore/Text.h"
#include "Support/PunycodeDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace selvane {
namespace {

using namespace std::string_view_literals;
using test::decoded;

std::string utf8(std::u32string_view scalars) {
    std::string text;
    for (const char32_t scalar : scalars) {
        if (scalar < 0x80) {
            text += static_cast<char>(scalar);
            continue;
        }
        const int following = scalar < 0x800 ? 1 : scalar < 0x10000 ? 2 : 3;
        constexpr std::array<unsigned, 4> lead{0, 0xc0, 0xe0, 0xf0};
        text += static_cast<char>(lead.at(static_cast<std::size_t>(following)) | scalar >> (6 * following));
        for (int rest = following - 1; rest >= 0; --rest)
            text += static_cast<char>(0x80 | (scalar >> (6 * rest) & 0x3f));
    }
    return text;
}

struct SampleRow {
    const char* name;
    std::string_view label;
    std::string_view encoded;
};

class PunycodeTable : public testing::TestWithParam<SampleRow> {};

TEST_P(PunycodeTable, Encodes) {
    EXPECT_EQ(Punycode::encode(GetParam().label), GetParam().encoded);
    EXPECT_EQ(decoded(GetParam().encoded), Text::scalars(GetParam().label));
}

// RFC 3492, section 7.1. Its capital in the Russian sample notes the case of a letter that was mapped;
// nothing is mapped here.
INSTANTIATE_TEST_SUITE_P(
    Samples, PunycodeTable,
    testing::Values(
        SampleRow{"arabicEgyptian",
                  "\u0644\u064A\u0647\u0645\u0627\u0628\u062A\u0643\u0644\u0645\u0648\u0634\u0639\u0631\u0628"
                  "\u064A\u061F",
                  "egbpdaj6bu4bxfgehfvwxn"},
        SampleRow{"chineseSimplified", "\u4ED6\u4EEC\u4E3A\u4EC0\u4E48\u4E0D\u8BF4\u4E2D\u6587",
                  "ihqwcrb4cv8a8dqg056pqjye"},
        SampleRow{"chineseTraditional", "\u4ED6\u5011\u7232\u4EC0\u9EBD\u4E0D\u8AAA\u4E2D\u6587",
                  "ihqwctvzc91f659drss3x8bo0yb"},
        SampleRow{"czech", "Pro\u010Dprost\u011Bnemluv\u00ED\u010Desky", "Proprostnemluvesky-uyb24dma41a"},
        SampleRow{"hebrew",
                  "\u05DC\u05DE\u05D4\u05D4\u05DD\u05E4\u05E9\u05D5\u05D8\u05DC\u05D0\u05DE\u05D3\u05D1\u05E8"
                  "\u05D9\u05DD\u05E2\u05D1\u05E8\u05D9\u05EA",
                  "4dbcagdahymbxekheh6e0a7fei0b"},
        SampleRow{
            "hindi",
            "\u092F\u0939\u0932\u094B\u0917\u0939\u093F\u0928\u094D\u0926\u0940\u0915\u094D\u092F\u094B\u0902"
            "\u0928\u0939\u0940\u0902\u092C\u094B\u0932\u0938\u0915\u0924\u0947\u0939\u0948\u0902",
            "i1baa7eci9glrd9b2ae1bj0hfcgg6iyaf8o0a1dig0cd"},
        SampleRow{"japanese",
                  "\u306A\u305C\u307F\u3093\u306A\u65E5\u672C\u8A9E\u3092\u8A71\u3057\u3066\u304F\u308C\u306A"
                  "\u3044\u306E\u304B",
                  "n8jok5ay5dzabd5bym9f0cm5685rrjetr6pdxa"},
        SampleRow{"korean",
                  "\uC138\uACC4\uC758\uBAA8\uB4E0\uC0AC\uB78C\uB4E4\uC774\uD55C\uAD6D\uC5B4\uB97C\uC774\uD574"
                  "\uD55C\uB2E4\uBA74\uC5BC\uB9C8\uB098\uC88B\uC744\uAE4C",
                  "989aomsvi5e83db1d2a355cv1e0vak1dwrv93d5xbh15a0dt30a5jpsd879ccm6fea98c"},
        SampleRow{"russian",
                  "\u043F\u043E\u0447\u0435\u043C\u0443\u0436\u0435\u043E\u043D\u0438\u043D\u0435\u0433\u043E"
                  "\u0432\u043E\u0440\u044F\u0442\u043F\u043E\u0440\u0443\u0441\u0441\u043A\u0438",
                  "b1abfaaepdrnnbgefbadotcwatmq2g4l"},
        SampleRow{"spanish", "Porqu\u00E9nopuedensimplementehablarenEspa\u00F1ol",
                  "PorqunopuedensimplementehablarenEspaol-fmd56a"},
        SampleRow{"vietnamese", "T\u1EA1isaoh\u1ECDkh\u00F4ngth\u1EC3ch\u1EC9n\u00F3iti\u1EBFngVi\u1EC7t",
                  "TisaohkhngthchnitingVit-kjcr8268qyxafd2f1b9g"},
        SampleRow{"startsWithADigit", "3\u5E74B\u7D44\u91D1\u516B\u5148\u751F", "3B-ww4c5e180e575a65lsy2b"},
        SampleRow{"hyphensAndCapitals", "\u5B89\u5BA4\u5948\u7F8E\u6075-with-SUPER-MONKEYS",
                  "-with-SUPER-MONKEYS-pc58ag80a8qai00g7n9n"},
        SampleRow{"capitalsFirst", "Hello-Another-Way-\u305D\u308C\u305E\u308C\u306E\u5834\u6240",
                  "Hello-Another-Way--fc4qua05auwb3674vfr0b"},
        SampleRow{"digitLast", "\u3072\u3068\u3064\u5C4B\u6839\u306E\u4E0B2", "2-u9tlzr9756bt3uc0v"},
        SampleRow{"mixedCase", "Maji\u3067Koi\u3059\u308B5\u79D2\u524D", "MajiKoi5-783gue6qz075azm5e"},
        SampleRow{"lowerCaseLatin", "\u30D1\u30D5\u30A3\u30FCde\u30EB\u30F3\u30D0", "de-jg4avhby1noc0d"},
        SampleRow{"onlyKana", "\u305D\u306E\u30B9\u30D4\u30FC\u30C9\u3067", "d9juau41awczczp"},
        SampleRow{"asciiThatBreaksHostRules", "-> $1.00 <-", "-> $1.00 <--"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Edges, PunycodeTable,
    testing::Values(SampleRow{"nothing", "", ""}, SampleRow{"asciiAlone", "abc", "abc-"},
                    SampleRow{"hyphenAlone", "-", "--"}, SampleRow{"hyphenBefore", "-ü", "--eha"},
                    SampleRow{"hyphenBehind", "ü-", "--dha"}, SampleRow{"encodedTwice", "x--ü", "x---joa"},
                    SampleRow{"nulByte", "\0ü"sv, "\0-eha"sv}, SampleRow{"smallestScalar", "\u0080", "a"},
                    SampleRow{"greatestScalar", "\U0010FFFF", "dn32g"},
                    SampleRow{"greatestScalarBehindALetter", "a\U0010FFFF", "a-h023p"},
                    SampleRow{"repeated", "üü", "tdaa"}, SampleRow{"name", "bücher", "bcher-kva"},
                    SampleRow{"emoji", "🍅", "fi8h"}, SampleRow{"composed", "\u00e9", "9ca"},
                    SampleRow{"decomposedStaysSo", "e\u0301", "e-xbb"},
                    SampleRow{"finalSigma", "βόλος", "nxasmm1c"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Punycode, CapitalsStayCapitals) {
    EXPECT_EQ(Punycode::encode("BÜCHER"), "BCHER-2pa");
    EXPECT_EQ(Punycode::encode("bücher"), "bcher-kva");
}

TEST(Punycode, WhatIsNotUTF8HasNoForm) {
    for (const std::string_view label : {"\x80"sv, "b\xfc"sv, "\xc0\x80"sv, "\xed\xa0\x80"sv,
                                         "\xf4\x90\x80\x80"sv, "a\xe2\x82"sv, "ü\xff"sv})
        EXPECT_EQ(Punycode::encode(label), std::nullopt);
}

TEST(Punycode, ALongLabelDecodesBack) {
    const std::u32string scalars = std::u32string(3000, U'\U0010FFFF') + std::u32string(3000, U'ü') + U"z";
    const auto encoded = Punycode::encode(utf8(scalars));
    ASSERT_TRUE(encoded);
    EXPECT_EQ(decoded(*encoded), scalars);
}

TEST(Punycode, RandomLabelsDecodeBack) {
    std::mt19937 random(20260305);
    const auto below = [&random](std::uint32_t end) { return static_cast<std::uint32_t>(random() % end); };
    constexpr std::array<char32_t, 6> ends{0x80, 0x100, 0x600, 0x3000, 0xd800, 0x110000};
    for (int round = 0; round < 20000; ++round) {
        std::u32string scalars;
        for (std::uint32_t length = below(24); length > 0; --length) {
            const char32_t scalar = below(ends.at(below(ends.size())));
            scalars += scalar >= 0xd800 && scalar < 0xe000 ? U'z' : scalar;
        }
        const auto encoded = Punycode::encode(utf8(scalars));
        ASSERT_TRUE(encoded);
        ASSERT_EQ(decoded(*encoded), scalars) << *encoded;
        ASSERT_TRUE(std::all_of(encoded->begin(), encoded->end(), [](char byte) { return byte >= 0; }));
    }
}

} // namespace
} // namespace selvane
