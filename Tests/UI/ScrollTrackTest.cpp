#include "Selvane/UI/Tasks/ScrollTrack.h"

#include "TaskViewFixture.h"

#include <QSignalSpy>

#include <string>

namespace selvane {
namespace {

/// A bar of 106, so that the thumb has 100 to lie in, in a window.
class ScrollTrackTest : public testing::Test {
protected:
    ScrollTrackTest() {
        window.resize(200, 200);
        track.setParentItem(window.contentItem());
        track.setPosition({50, 20});
        track.setSize({10, 106});
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    void see(double part, double above) {
        track.setPartSeen(part);
        track.setPartAbove(above);
    }

    [[nodiscard]] static QPoint at(int y) { return {55, 20 + y}; }
    void press(int y) { QTest::mousePress(&window, Qt::LeftButton, {}, at(y)); }
    void drag(int y) { QTest::mouseMove(&window, at(y)); }
    void letGo(int y) { QTest::mouseRelease(&window, Qt::LeftButton, {}, at(y)); }

    /// What the user wanted last; -1 if nothing since then.
    [[nodiscard]] double wanted() {
        return scrolls.isEmpty() ? -1 : scrolls.takeLast().constFirst().toDouble();
    }

    QQuickWindow window;
    ScrollTrack track;
    QSignalSpy scrolls{&track, &ScrollTrack::scrolled};
};

TEST_F(ScrollTrackTest, ThumbShowsThePartThatIsSeen) {
    see(0.4, 0);
    EXPECT_DOUBLE_EQ(track.thumbY(), 3);
    EXPECT_DOUBLE_EQ(track.thumbHeight(), 40);
    see(0.4, 0.3);
    EXPECT_DOUBLE_EQ(track.thumbY(), 33);
    see(0.4, 0.6);
    EXPECT_DOUBLE_EQ(track.thumbY(), 63);
    track.setHeight(206);
    EXPECT_DOUBLE_EQ(track.thumbY(), 123);
    EXPECT_DOUBLE_EQ(track.thumbHeight(), 80);
}

TEST_F(ScrollTrackTest, ThumbOfALongListIsNotTooShortAndStillGoesFromEndToEnd) {
    see(0.02, 0);
    EXPECT_DOUBLE_EQ(track.thumbHeight(), 15);
    EXPECT_DOUBLE_EQ(track.thumbY(), 3);
    see(0.02, 0.98);
    EXPECT_DOUBLE_EQ(track.thumbY(), 88);
}

TEST_F(ScrollTrackTest, ThumbStaysWithinTheTrack) {
    see(0.4, -0.5);
    EXPECT_DOUBLE_EQ(track.thumbY(), 3);
    see(0.4, 2);
    EXPECT_DOUBLE_EQ(track.thumbY(), 63);
    see(1, 0);
    EXPECT_DOUBLE_EQ(track.thumbY(), 3);
    EXPECT_DOUBLE_EQ(track.thumbHeight(), 100);
    track.setHeight(2);
    EXPECT_DOUBLE_EQ(track.thumbHeight(), 0);
}

TEST_F(ScrollTrackTest, ThumbIsDraggedFromWhereItIsHeld) {
    see(0.4, 0);
    press(13);
    EXPECT_EQ(wanted(), -1) << "not yet moved";
    drag(23);
    EXPECT_NEAR(wanted(), 0.1, 1e-9);
    drag(43);
    EXPECT_NEAR(wanted(), 0.3, 1e-9);
    drag(160);
    EXPECT_NEAR(wanted(), 0.6, 1e-9) << "the end";
    drag(-20);
    EXPECT_NEAR(wanted(), 0, 1e-9);
    letGo(13);
}

TEST_F(ScrollTrackTest, PressElsewhereBringsTheThumbsMiddleThere) {
    see(0.4, 0);
    press(63);
    EXPECT_NEAR(wanted(), 0.4, 1e-9);
    drag(73);
    EXPECT_NEAR(wanted(), 0.5, 1e-9);
    letGo(73);
}

TEST_F(ScrollTrackTest, PointerWithoutAPressScrollsNothing) {
    see(0.4, 0);
    drag(13);
    drag(63);
    QTest::mouseClick(&window, Qt::RightButton, {}, at(63));
    EXPECT_EQ(wanted(), -1);
}

TEST_F(ScrollTrackTest, ListThatIsSeenWholeIsNotScrolled) {
    see(1, 0);
    press(13);
    drag(63);
    letGo(63);
    EXPECT_EQ(wanted(), -1);
}

TEST_F(ScrollTrackTest, IsPressedUntilItIsLetGoOrOutOfUse) {
    see(0.4, 0);
    press(13);
    EXPECT_TRUE(track.isPressed());
    letGo(13);
    EXPECT_FALSE(track.isPressed());
    press(13);
    track.ungrabMouse();
    EXPECT_FALSE(track.isPressed());
    letGo(13);
    press(13);
    track.setVisible(false);
    EXPECT_FALSE(track.isPressed());
}

TEST_F(ScrollTrackTest, IsHoveredWhileThePointerIsOnIt) {
    drag(150);
    drag(50);
    EXPECT_TRUE(QTest::qWaitFor([this] { return track.isHovered(); }));
    track.setVisible(false);
    EXPECT_FALSE(track.isHovered());
    track.setVisible(true);
    drag(150);
    drag(50);
    EXPECT_TRUE(QTest::qWaitFor([this] { return track.isHovered(); }));
    drag(150);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !track.isHovered(); }));
}

/// The bar beside the list of tasks.
class ScrollThumbTest : public test::TaskViewFixture {
protected:
    void showTasks(int count) {
        for (int number = 0; number < count; ++number)
            model->addTask("Task " + std::to_string(number));
        show();
    }

    [[nodiscard]] ScrollTrack& bar() { return *view().findChild<ScrollTrack*>(); }
    [[nodiscard]] const QQuickItem& thumb() { return *bar().childItems().constFirst(); }
    [[nodiscard]] QQuickItem& list() {
        for (QQuickItem* const item : view().findChildren<QQuickItem*>()) {
            if (item->inherits("QQuickListView"))
                return *item;
        }
        ADD_FAILURE() << "there is no list";
        return *window.contentItem();
    }
    [[nodiscard]] double contentY() { return list().property("contentY").toDouble(); }
    [[nodiscard]] double end() { return list().property("contentHeight").toDouble() - list().height(); }
    [[nodiscard]] QPoint at(double y) { return bar().mapToScene({5, y}).toPoint(); }
};

TEST_F(ScrollThumbTest, IsThereOnlyForAListThatIsHigherThanItsPlace) {
    showTasks(2);
    EXPECT_FALSE(bar().isVisible());
    for (int number = 0; number < 12; ++number)
        model->addTask("Task");
    EXPECT_TRUE(QTest::qWaitFor([this] { return bar().isVisible(); }));
    EXPECT_EQ(thumb().opacity(), 0) << "nothing moves";
}

TEST_F(ScrollThumbTest, DragScrollsTheListFromEndToEnd) {
    showTasks(20);
    EXPECT_TRUE(QTest::qWaitFor([this] { return bar().isVisible(); }));
    QTest::mousePress(&window, Qt::LeftButton, {}, at(5));
    EXPECT_EQ(contentY(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return thumb().opacity() == 1; }));
    QTest::mouseMove(&window, at(bar().height() + 20));
    EXPECT_NEAR(contentY(), end(), 0.001);
    QTest::mouseMove(&window, at(5));
    EXPECT_NEAR(contentY(), 0, 0.001);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, at(5));
    EXPECT_EQ(tasks->liftedRow(), -1) << "a drag of the thumb is none of a row";
}

TEST_F(ScrollThumbTest, IsSeenWhileTheWheelScrollsTheList) {
    showTasks(20);
    EXPECT_TRUE(QTest::qWaitFor([this] { return bar().isVisible(); }));
    const QPoint place = list().mapToScene({100, 50}).toPoint();
    QWheelEvent event(place, window.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_TRUE(QTest::qWaitFor([this] { return thumb().opacity() == 1; }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return thumb().opacity() == 0; }));
    EXPECT_GT(contentY(), 0);
    EXPECT_GT(bar().thumbY(), 3);
}

} // namespace
} // namespace selvane
