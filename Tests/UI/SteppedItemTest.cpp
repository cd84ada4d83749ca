#include "Selvane/UI/Timer/SteppedItem.h"

#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

namespace selvane {
namespace {

class Counted final : public SteppedItem {
public:
    using SteppedItem::repaint;

    int drawn = 0;
    int shows = 0;

protected:
    void draw(QPainter&) override { ++drawn; }
    void step() override {}
    void shownChanged() override { ++shows; }
};

class SteppedItemTest : public testing::Test {
protected:
    SteppedItemTest() {
        window.resize(200, 200);
        item.setParentItem(window.contentItem());
        item.setSize({100, 100});
        show();
    }

    void show() {
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        frame();
    }
    void frame() { EXPECT_FALSE(window.grabWindow().isNull()); }

    QQuickWindow window;
    Counted item;
};

TEST_F(SteppedItemTest, WindowThatIsShownAgainShowsWhatWasPainted) {
    ASSERT_EQ(item.drawn, 1);
    window.hide();
    show();
    EXPECT_EQ(item.shows, 3) << "it came, went and came";
    EXPECT_EQ(item.drawn, 1);
}

TEST_F(SteppedItemTest, WhatChangesInAHiddenWindowIsPaintedWhenItIsShown) {
    window.hide();
    item.repaint();
    show();
    EXPECT_EQ(item.drawn, 2);
}

TEST_F(SteppedItemTest, PartThatChangesIsPaintedWithTheWholeWhenNothingWasPainted) {
    item.repaint();
    item.repaint({0, 0, 10, 10});
    frame();
    EXPECT_EQ(item.drawn, 2);
    item.repaint({0, 0, 10, 10});
    frame();
    EXPECT_EQ(item.drawn, 3);
}

} // namespace
} // namespace selvane
