#include "Selvane/Platform/Linux/XSettingValues.h"

#include "XSettingsBytes.h"

#include <gtest/gtest.h>

#include <bit>
#include <span>

namespace selvane::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class XSettingValuesOrders : public testing::TestWithParam<std::endian> {};

TEST_P(XSettingValuesOrders, AreReadInBothOrdersOfBytes) {
    const auto bytes = XSettingsBytes(GetParam())
                           .integer("Xft/Hinting", -1)
                           .color("Demo/Color")
                           .string("Net/ThemeName", "Greybird-dark")
                           .string("Net/Empty", "")
                           .integer("Gtk/EnableAnimations", 0x01020304)
                           .bytes();
    const XSettingValues expected{{"Xft/Hinting", -1},
                                  {"Net/ThemeName", "Greybird-dark"},
                                  {"Net/Empty", ""},
                                  {"Gtk/EnableAnimations", 0x01020304}};
    EXPECT_EQ(parseXSettings(bytes), expected);
}

INSTANTIATE_TEST_SUITE_P(All, XSettingValuesOrders, testing::Values(std::endian::little, std::endian::big),
                         [](const auto& test) { return test.param == std::endian::big ? "Most" : "Least"; });

TEST(XSettingValuesTest, AreReadFromBytesAsTheProtocolWritesThem) {
    // Least significant byte first, serial 2, two settings.
    const Bytes bytes{0, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0,
                      // A text: the name's 5 bytes and 3 to fill up, serial 2, the value's 6 bytes and 2.
                      1, 0, 5, 0, 'N', 'e', 't', '/', 'T', 0, 0, 0, 2, 0, 0, 0, 6, 0, 0, 0, 'A', ':', 'd',
                      'a', 'r', 'k', 0, 0,
                      // A number: a name that needs no filling up, serial 0.
                      0, 0, 4, 0, 'G', 't', 'k', 'E', 0, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(parseXSettings(bytes), (XSettingValues{{"Net/T", "A:dark"}, {"GtkE", 1}}));
}

TEST(XSettingValuesTest, NoSettingsAreNone) {
    EXPECT_EQ(parseXSettings(XSettingsBytes(std::endian::little).bytes()), XSettingValues());
}

TEST(XSettingValuesTest, BytesThatEndTooEarlyAreRefusedWhereverTheyEnd) {
    const auto bytes = XSettingsBytes(std::endian::little)
                           .string("Net/ThemeName", "Adwaita")
                           .color("Demo/Color")
                           .integer("Gtk/EnableAnimations", 0)
                           .bytes();
    ASSERT_TRUE(parseXSettings(bytes));
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(parseXSettings(std::span(bytes).first(length))) << length;
}

TEST(XSettingValuesTest, BytesBehindTheLastSettingAreNobodys) {
    auto bytes = XSettingsBytes(std::endian::little).integer("Net/CursorBlink", 1).bytes();
    bytes.insert(bytes.end(), 9, 0xff);
    EXPECT_EQ(parseXSettings(bytes), (XSettingValues{{"Net/CursorBlink", 1}}));
}

TEST(XSettingValuesTest, ATypeThatTheProtocolDoesntKnowIsRefused) {
    EXPECT_FALSE(parseXSettings(
        XSettingsBytes(std::endian::little).integer("Net/CursorBlink", 1).unknown("Net/New").bytes()));
}

TEST(XSettingValuesTest, AnOrderOfBytesThatThereIsntIsRefused) {
    auto bytes = XSettingsBytes(std::endian::little).integer("Net/CursorBlink", 1).bytes();
    bytes[0] = 2;
    EXPECT_FALSE(parseXSettings(bytes));
}

TEST(XSettingValuesTest, LengthsBeyondAllBytesAreRefused) {
    auto bytes = XSettingsBytes(std::endian::little).string("Net/", "Adwaita").bytes();
    for (const std::size_t place : {8U, 14U, 24U}) {
        auto broken = bytes;
        broken[place] = 0xff;
        broken[place + 1] = 0xff;
        EXPECT_FALSE(parseXSettings(broken)) << place;
        if (place == 14)
            continue;
        broken[place + 2] = 0xff;
        broken[place + 3] = 0xff;
        EXPECT_FALSE(parseXSettings(broken)) << place;
    }
}

} // namespace
} // namespace selvane::test
