#include "Selvane/Platform/Linux/ItemPicture.h"

#include "PlainImage.h"
#include "Support/PlainTitles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace selvane::test {
namespace {

using Company = ItemLook::Company;

constexpr std::uint32_t imageColor = 0xff112233;
constexpr std::uint32_t wordColor = 0xff445566;

class ItemPictureTest : public testing::Test {
protected:
    ItemPictureTest() { show("", Company::image); }

    void show(const std::string& title, Company company) {
        picture.setLook({std::make_shared<PlainImage>(imageColor, 0), Ink::dark, title, company});
    }

    static std::uint32_t at(const Picture& picture, int x, int y) {
        return picture.argb.at(static_cast<std::size_t>(y * picture.width + x));
    }

    PlainTitles titles{wordColor, 0};
    ItemPicture picture{titles};
};

TEST_F(ItemPictureTest, WithoutATitleItIsSquare) {
    EXPECT_EQ(picture.titledWidth(20), 0);
    const Picture image = picture.drawImage(20, Ink::dark);
    EXPECT_EQ(image.width, 20);
    EXPECT_EQ(image.height, 20);
    EXPECT_EQ(std::ranges::count(image.argb, imageColor), 400);
}

TEST_F(ItemPictureTest, TitleStandsAfterTheImageAndABlank) {
    show("24:59", Company::image);
    EXPECT_EQ(picture.titledWidth(20), 20 + 6 * 10);
    const Picture both = picture.drawTitled(20, Ink::dark);
    EXPECT_EQ(titles.drawn, " 24:59");
    EXPECT_EQ(both.width, 80);
    EXPECT_EQ(both.height, 20);
    ASSERT_EQ(both.argb.size(), 1600U);
    for (const int y : {0, 19}) {
        EXPECT_EQ(at(both, 0, y), imageColor);
        EXPECT_EQ(at(both, 19, y), imageColor);
        EXPECT_EQ(at(both, 20, y), wordColor);
        EXPECT_EQ(at(both, 79, y), wordColor);
    }
}

TEST_F(ItemPictureTest, TitleAloneHasNoBlank) {
    show("24:59", Company::nothing);
    EXPECT_EQ(picture.titledWidth(20), 5 * 10);
    const Picture words = picture.drawTitled(20, Ink::dark);
    EXPECT_EQ(titles.drawn, "24:59");
    EXPECT_EQ(std::ranges::count(words.argb, wordColor), 1000);
    EXPECT_EQ(picture.drawImage(20, Ink::dark).width, 20) << "for panels without the room";
}

TEST_F(ItemPictureTest, WithoutAnImageThereIsNoneToShow) {
    ItemPicture empty(titles);
    EXPECT_TRUE(empty.drawImage(20, Ink::dark).argb.empty());
    empty.setLook({nullptr, Ink::dark, "1:00", Company::image});
    EXPECT_EQ(empty.titledWidth(20), 4 * 10);
}

} // namespace
} // namespace selvane::test
