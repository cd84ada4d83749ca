#include "Selvane/UI/Controls/StillItem.h"

#include <QDataStream>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace selvane {
namespace {

/// Its left third is red, its right third blue, and what lies between is of the item's colour.
class Flag final : public StillItem {
public:
    using StillItem::StillItem;

    QColor middle = Qt::white;
    bool shares = true;
    bool clear = false;
    double least = std::numeric_limits<double>::infinity();
    double leastHeight = std::numeric_limits<double>::infinity();
    std::vector<QSizeF> painted;

    void paint(QPainter* painter, const QSizeF& size) override {
        painted.push_back(size);
        painter->fillRect(QRectF({}, size), middle);
        painter->fillRect(QRectF(0, 0, 10, size.height()), Qt::red);
        painter->fillRect(QRectF(size.width() - 10, 0, 10, size.height()), Qt::blue);
    }

protected:
    void describe(QDataStream& look) const override {
        if (shares)
            look << "Flag" << middle;
    }
    [[nodiscard]] bool isClear() const override { return clear; }
    [[nodiscard]] QSizeF leastSize() const override { return {least, leastHeight}; }
};

class StillItemTest : public testing::Test {
protected:
    StillItemTest() {
        window.resize(400, 400);
        for (Flag* const flag : {&first, &second})
            flag->setSize({300, 40});
        second.setY(50);
    }

    QImage draw() { return window.grabWindow(); }

    QQuickWindow window;
    Flag first{window.contentItem()};
    Flag second{window.contentItem()};
};

TEST_F(StillItemTest, IsPaintedOnceAndAgainOnlyWhenAskedFor) {
    first.shares = false;
    draw();
    draw();
    EXPECT_EQ(first.painted.size(), 1U);
    first.update();
    draw();
    EXPECT_EQ(first.painted.size(), 2U);
}

TEST_F(StillItemTest, ItemsThatLookTheSameArePaintedOnce) {
    const QImage picture = draw();
    EXPECT_EQ(first.painted.size() + second.painted.size(), 1U);
    EXPECT_EQ(picture.pixelColor(5, 20), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(5, 70), QColor(Qt::red));
}

TEST_F(StillItemTest, ItemsThatDifferHaveTheirOwnPictures) {
    second.middle = Qt::green;
    const QImage picture = draw();
    EXPECT_EQ(picture.pixelColor(150, 20), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(150, 70), QColor(Qt::green));
}

TEST_F(StillItemTest, SizeMakesADifference) {
    second.setWidth(200);
    const QImage picture = draw();
    EXPECT_EQ(picture.pixelColor(195, 20), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(195, 70), QColor(Qt::blue));
}

TEST_F(StillItemTest, WhoWritesNothingSharesNothing) {
    first.shares = false;
    second.shares = false;
    draw();
    EXPECT_EQ(first.painted.size(), 1U);
    EXPECT_EQ(second.painted.size(), 1U);
}

TEST_F(StillItemTest, WhatIsClearIsNotPaintedUntilItIsSeen) {
    first.clear = true;
    second.setVisible(false);
    EXPECT_EQ(draw().pixelColor(5, 20), QColor(Qt::white)) << "the window";
    EXPECT_THAT(first.painted, testing::IsEmpty());
    first.clear = false;
    first.update();
    EXPECT_EQ(draw().pixelColor(5, 20), QColor(Qt::red));
    first.clear = true;
    first.update();
    EXPECT_EQ(draw().pixelColor(5, 20), QColor(Qt::white));
}

TEST_F(StillItemTest, WhatIsHiddenIsNotPaintedUntilItIsSeen) {
    first.shares = false;
    first.setVisible(false);
    draw();
    EXPECT_THAT(first.painted, testing::IsEmpty());
    first.setVisible(true);
    EXPECT_EQ(draw().pixelColor(5, 20), QColor(Qt::red));
    EXPECT_EQ(first.painted.size(), 1U);
}

TEST_F(StillItemTest, WhatIsInAHiddenItemIsPaintedWhenThatIsSeen) {
    QQuickItem parent(window.contentItem());
    parent.setVisible(false);
    first.setParentItem(&parent);
    first.shares = false;
    draw();
    EXPECT_THAT(first.painted, testing::IsEmpty());
    parent.setVisible(true);
    EXPECT_EQ(draw().pixelColor(5, 20), QColor(Qt::red));
    first.setParentItem(window.contentItem());
}

TEST_F(StillItemTest, EvenMiddleOfBothSidesHasOneColor) {
    second.setVisible(false);
    first.setSize({300, 200});
    first.leastHeight = 20;
    first.least = 30;
    for (const QColor& color : {QColor(Qt::green), QColor(37, 91, 143, 200)}) {
        first.middle = color;
        first.update();
        const QImage picture = draw();
        EXPECT_EQ(first.painted.back(), QSizeF(30, 20));
        const QColor beside = picture.pixelColor(150, 1);
        for (const QPoint place : {QPoint(150, 100), QPoint(12, 100), QPoint(287, 198)})
            EXPECT_EQ(picture.pixelColor(place), beside) << place.x();
        EXPECT_EQ(picture.pixelColor(5, 100), QColor(Qt::red));
    }
}

TEST_F(StillItemTest, EvenMiddleIsRepeatedNotKept) {
    second.setVisible(false);
    first.middle = Qt::green;
    first.least = 30;
    const QImage picture = draw();
    EXPECT_THAT(first.painted, testing::ElementsAre(QSizeF(30, 40)));
    for (const int x : {0, 9})
        EXPECT_EQ(picture.pixelColor(x, 20), QColor(Qt::red)) << x;
    for (const int x : {10, 150, 289})
        EXPECT_EQ(picture.pixelColor(x, 20), QColor(Qt::green)) << x;
    for (const int x : {290, 299})
        EXPECT_EQ(picture.pixelColor(x, 20), QColor(Qt::blue)) << x;
    EXPECT_EQ(picture.pixelColor(300, 20), QColor(Qt::white));
}

TEST_F(StillItemTest, LittleThatCouldBeSparedIsKept) {
    second.setVisible(false);
    first.least = 250;
    draw();
    EXPECT_THAT(first.painted, testing::ElementsAre(QSizeF(300, 40)));
}

TEST_F(StillItemTest, WidthThatIsNoWholeNumberKeepsItsRest) {
    second.setVisible(false);
    first.least = 30;
    first.setWidth(299.5);
    draw();
    ASSERT_EQ(first.painted.size(), 1U);
    EXPECT_DOUBLE_EQ(first.painted[0].width(), 30.5);
}

} // namespace
} // namespace selvane
