// User-perceived characters against the examples that the Unicode Consortium publishes with each version.

#include "SelvaneCore/Text.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

constexpr const char* examples = "/usr/share/unicode/auxiliary/GraphemeBreakTest.txt";

std::string utf8(std::uint32_t scalar) {
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    const auto continuation = [&](int shift) { return byte(0x80 | ((scalar >> shift) & 0x3f)); };
    if (scalar < 0x80)
        return {byte(scalar)};
    if (scalar < 0x800)
        return {byte(0xc0 | (scalar >> 6)), continuation(0)};
    if (scalar < 0x10000)
        return {byte(0xe0 | (scalar >> 12)), continuation(6), continuation(0)};
    return {byte(0xf0 | (scalar >> 18)), continuation(12), continuation(6), continuation(0)};
}

/// The characters of one line, as in "÷ 0061 × 0308 ÷ 0062 ÷ # remark": a division sign before each new one,
/// a multiplication sign within. Absent for what has another form.
std::optional<std::vector<std::string>> characters(std::string_view line) {
    std::istringstream words{std::string(line.substr(0, line.find('#')))};
    std::vector<std::string> result;
    std::string sign;
    std::string number;
    while (words >> sign) {
        if (sign != "÷" && sign != "×")
            return std::nullopt;
        if (!(words >> number))
            return sign == "÷" && !result.empty() ? std::optional(result) : std::nullopt;
        std::uint32_t scalar = 0;
        const char* const end = number.data() + number.size();
        const auto [rest, error] = std::from_chars(number.data(), end, scalar, 16);
        if (error != std::errc{} || rest != end || (result.empty() && sign != "÷"))
            return std::nullopt;
        if (sign == "÷")
            result.emplace_back();
        result.back() += utf8(scalar);
    }
    return std::nullopt;
}

/// Where our boundaries differ from those of the characters; empty if nowhere.
std::string difference(const std::vector<std::string>& expected) {
    std::string text;
    for (const std::string& character : expected)
        text += character;
    if (!Text::isValid(text))
        return "not a text";
    if (Text::count(text) != expected.size())
        return "counted " + std::to_string(Text::count(text)) + " characters";
    if (!std::ranges::equal(Text::characters(text), expected))
        return "other characters one by one";
    std::size_t boundary = 0;
    for (std::size_t length = 0; length <= expected.size(); ++length) {
        const std::string_view prefix = Text::prefix(text, length);
        if (prefix.data() != text.data() || prefix.size() != boundary)
            return "character " + std::to_string(length) + " ends at byte " + std::to_string(prefix.size());
        if (length < expected.size())
            boundary += expected[length].size();
    }
    return {};
}

TEST(GraphemeBreak, AgreesWithThePublishedExamples) {
    std::ifstream file(examples);
    ASSERT_TRUE(file) << examples << " is missing; Scripts/packages names its package";
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    std::cout << line << '\n';

    int read = 0;
    int different = 0;
    for (int number = 2; std::getline(file, line); ++number) {
        if (line.empty() || line.front() == '#')
            continue;
        const std::optional<std::vector<std::string>> expected = characters(line);
        ASSERT_TRUE(expected) << "line " << number << " can't be read: " << line;
        ++read;
        const std::string found = difference(*expected);
        if (found.empty())
            continue;
        // A new version of Unicode may change many lines; the first ones tell enough.
        if (++different <= 5)
            ADD_FAILURE() << "line " << number << ": " << found << ": " << line;
    }
    EXPECT_EQ(different, 0);
    EXPECT_GE(read, 500);
    std::cout << read << " lines read, " << different << " of them differ\n";
}

TEST(GraphemeBreak, OtherLinesAreRefused) {
    for (const char* const line : {"", "÷", "0061", "÷ 0061", "× 0061 ÷", "÷ 0061 0062 ÷", "÷ 00z1 ÷",
                                   "÷ 0061 × 0308 ×", "÷ 0061 ÷ 0062"})
        EXPECT_EQ(characters(line), std::nullopt) << line;
    EXPECT_EQ(characters("÷ 0061 × 0308 ÷ 1F600 ÷\t# remark"),
              (std::vector<std::string>{"a\u0308", "\U0001F600"}));
}

} // namespace
} // namespace selvane
