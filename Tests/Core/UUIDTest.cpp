#include "SelvaneCore/UUID.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace selvane {
namespace {

constexpr std::string_view sample = "0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF";

TEST(UUID, CanonicalTextIsUpperCase) {
    const auto id = UUID::parse(sample);
    ASSERT_TRUE(id);
    EXPECT_EQ(id->text(), sample);
    EXPECT_EQ(id->bytes()[0], 0x0f);
    EXPECT_EQ(id->bytes()[15], 0xff);
    EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, LowerAndMixedCaseAreTheSame) {
    EXPECT_EQ(UUID::parse("0f1e2d3c-4b5a-4978-8695-a4b3c2d1e0ff"), UUID::parse(sample));
    EXPECT_EQ(UUID::parse("0f1E2d3C-4b5A-4978-8695-a4B3c2D1e0fF"), UUID::parse(sample));
}

TEST(UUID, OtherTextIsNone) {
    const std::string good(sample);
    EXPECT_FALSE(UUID::parse(""));
    EXPECT_FALSE(UUID::parse("{" + good + "}"));
    EXPECT_FALSE(UUID::parse(good + " "));
    EXPECT_FALSE(UUID::parse("0F1E2D3C4B5A49788695A4B3C2D1E0FF"));
    for (std::size_t index = 0; index < good.size(); ++index) {
        for (const char character : {'G', 'g', '/', ':', '@', '`', ' ', '\0', '\xff'}) {
            std::string bad = good;
            bad[index] = character;
            EXPECT_FALSE(UUID::parse(bad)) << bad;
        }
        EXPECT_FALSE(UUID::parse(good.substr(0, index)));
    }
    std::string dashes = good;
    std::swap(dashes[8], dashes[9]);
    EXPECT_FALSE(UUID::parse(dashes));
}

TEST(UUID, RandomOnesDifferAndAreOfVersionFour) {
    std::set<UUID> seen;
    for (int count = 0; count < 1000; ++count) {
        const UUID id = UUID::random();
        EXPECT_TRUE(seen.insert(id).second);
        EXPECT_EQ(id.bytes()[6] >> 4, 4);
        EXPECT_EQ(id.bytes()[8] >> 6, 2);
        EXPECT_EQ(UUID::parse(id.text()), id);
    }
}

TEST(UUID, HashTellsOneByteApart) {
    std::set<std::size_t> hashes;
    for (std::size_t index = 0; index < 16; ++index) {
        UUID::Bytes bytes{};
        bytes[index] = 1;
        hashes.insert(std::hash<UUID>()(UUID(bytes)));
    }
    EXPECT_EQ(hashes.size(), 16U);
}

} // namespace
} // namespace selvane
