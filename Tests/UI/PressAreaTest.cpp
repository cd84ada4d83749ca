#include "ControlsFixture.h"

#include <QPointer>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace selvane {
namespace {

/// A button that draws nothing, 80 to 30 in a window.
class PressAreaTest : public test::ControlsFixture {
protected:
    QQuickItem* button = show(R"(PressArea {
        width: 80; height: 30
        leftPadding: 10; topPadding: 3; rightPadding: 20; bottomPadding: 4
        topInset: -4; leftInset: -5; rightInset: -6; bottomInset: -7
        contentItem: Item { objectName: "content"; implicitWidth: 24; implicitHeight: 12 }
        background: Item { objectName: "background" }
    })");
    QSignalSpy clicks{button, SIGNAL(clicked())};

    [[nodiscard]] bool is(const char* state) const { return button->property(state).toBool(); }
    [[nodiscard]] bool comesToBe(const char* state) const {
        return QTest::qWaitFor([this, state] { return is(state); });
    }
    [[nodiscard]] double number(const char* name) const { return button->property(name).toDouble(); }
    [[nodiscard]] static QPoint outside() { return {5, 5}; }

    void press() { QTest::mousePress(&window, Qt::LeftButton, {}, middle(button)); }
    void move(QPoint place) { QTest::mouseMove(&window, place); }
    /// Also if the pointer was there already.
    void moveOnto() {
        move(outside());
        move(middle(button));
    }
    void letGo(QPoint place) { QTest::mouseRelease(&window, Qt::LeftButton, {}, place); }
    void takeKeyboard() { button->forceActiveFocus(Qt::TabFocusReason); }

    void sendKey(QEvent::Type type, Qt::Key which, bool repeats) {
        QKeyEvent event(type, which, Qt::NoModifier, QString(), repeats);
        QCoreApplication::sendEvent(&window, &event);
    }

    [[nodiscard]] static QRectF frame(const QQuickItem* item) { return {item->position(), item->size()}; }
    [[nodiscard]] QQuickItem* held(const char* name) const {
        return button->property(name).value<QQuickItem*>();
    }
};

// The mouse

TEST_F(PressAreaTest, ClickIsAPressThatEndsOnIt) {
    press();
    EXPECT_TRUE(is("pressed"));
    EXPECT_EQ(clicks.count(), 0) << "not yet";
    letGo(middle(button));
    EXPECT_FALSE(is("pressed"));
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(PressAreaTest, PressThatEndsElsewhereIsNone) {
    press();
    move(outside());
    EXPECT_FALSE(is("pressed"));
    letGo(outside());
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(PressAreaTest, PressThatComesBackIsAClick) {
    press();
    move(outside());
    move(middle(button));
    EXPECT_TRUE(is("pressed"));
    letGo(middle(button));
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(PressAreaTest, PressThatBeganElsewhereIsNone) {
    QTest::mousePress(&window, Qt::LeftButton, {}, outside());
    move(middle(button));
    EXPECT_FALSE(is("pressed"));
    letGo(middle(button));
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(PressAreaTest, PressThatIsTakenAwayIsNone) {
    press();
    button->ungrabMouse();
    EXPECT_FALSE(is("pressed"));
    letGo(middle(button));
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(PressAreaTest, ListThatIsDraggedByTheButtonTakesThePress) {
    QQuickItem* const list = show(R"(Flickable {
        width: 100; height: 60; contentHeight: 400
        property alias button: button
        PressArea { id: button; width: 100; height: 50 }
    })");
    QObject* const inside = list->property("button").value<QObject*>();
    const QSignalSpy clicksInside(inside, SIGNAL(clicked()));
    const QPoint place = list->mapToScene({50, 45}).toPoint();
    QTest::mousePress(&window, Qt::LeftButton, {}, place);
    EXPECT_TRUE(inside->property("pressed").toBool());
    for (int step = 1; step <= 10; ++step)
        move(place - QPoint(0, 4 * step));
    EXPECT_FALSE(inside->property("pressed").toBool());
    letGo(place - QPoint(0, 40));
    EXPECT_EQ(clicksInside.count(), 0);
}

TEST_F(PressAreaTest, EachHalfOfADoubleClickIsAClick) {
    QQuickItem* const below = show(R"(MouseArea {
        z: -1; width: 80; height: 30
        property int count: 0
        onPressed: count += 1
        onDoubleClicked: count += 1
    })");
    QTest::mouseDClick(&window, Qt::LeftButton, {}, middle(button));
    EXPECT_EQ(clicks.count(), 2);
    EXPECT_FALSE(is("pressed"));
    EXPECT_EQ(below->property("count").toInt(), 0) << "nothing of it is for what lies below";
}

TEST_F(PressAreaTest, OtherButtonsOfTheMouseAreForOthers) {
    QQuickItem* const below = show(R"(MouseArea {
        z: -1; width: 80; height: 30; acceptedButtons: Qt.AllButtons
        property int count: 0
        onPressed: count += 1
    })");
    QTest::mouseClick(&window, Qt::RightButton, {}, middle(button));
    QTest::mouseClick(&window, Qt::MiddleButton, {}, middle(button));
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(below->property("count").toInt(), 2);
}

TEST_F(PressAreaTest, ClickLeavesTheKeyboardWhereItIs) {
    clickOn(button);
    EXPECT_FALSE(button->hasActiveFocus());
}

// The pointer

TEST_F(PressAreaTest, IsHoveredWhileThePointerIsOnIt) {
    moveOnto();
    EXPECT_TRUE(comesToBe("hovered"));
    move(outside());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !is("hovered"); }));
}

TEST_F(PressAreaTest, PointerIsForWhatItLiesInToo) {
    QQuickItem* const around = show(R"(Item {
        width: 100; height: 60
        property alias hovered: hover.hovered
        property alias button: inside
        HoverHandler { id: hover }
        PressArea { id: inside; width: 80; height: 30 }
    })");
    const auto* const inside = around->property("button").value<QQuickItem*>();
    moveOnto();
    EXPECT_TRUE(QTest::qWaitFor([inside] { return inside->property("hovered").toBool(); }));
    EXPECT_TRUE(around->property("hovered").toBool());
}

TEST_F(PressAreaTest, NeitherHoveredNorPressedOnceItIsOutOfUse) {
    for (const char* const use : {"enabled", "visible"}) {
        moveOnto();
        EXPECT_TRUE(comesToBe("hovered")) << use;
        press();
        EXPECT_TRUE(is("pressed") && is("down")) << use;
        button->setProperty(use, false);
        EXPECT_FALSE(is("hovered") || is("pressed") || is("down")) << use;
        button->setProperty(use, true);
        letGo(middle(button));
        EXPECT_EQ(clicks.count(), 0) << use;
    }
}

TEST_F(PressAreaTest, PointerIsKnownOfButHoversNothingWhileItIsOutOfUse) {
    button->setEnabled(false);
    moveOnto();
    EXPECT_TRUE(comesToBe("pointed"));
    EXPECT_FALSE(is("hovered"));
    const QSignalSpy hovers(button, SIGNAL(hoveredChanged()));
    button->setEnabled(true);
    EXPECT_TRUE(is("hovered"));
    button->setEnabled(false);
    EXPECT_FALSE(is("hovered"));
    EXPECT_EQ(hovers.count(), 2);
    move(outside());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !is("pointed"); }));
    EXPECT_EQ(hovers.count(), 2);
}

TEST_F(PressAreaTest, KeyHeldWhileItGoesOutOfUseIsNoClick) {
    takeKeyboard();
    sendKey(QEvent::KeyPress, Qt::Key_Space, false);
    EXPECT_TRUE(is("pressed"));
    button->setEnabled(false);
    EXPECT_FALSE(is("pressed"));
    sendKey(QEvent::KeyRelease, Qt::Key_Space, false);
    EXPECT_EQ(clicks.count(), 0);
}

// The keyboard

TEST_F(PressAreaTest, SpaceClicksWhenItIsLetGo) {
    takeKeyboard();
    sendKey(QEvent::KeyPress, Qt::Key_Space, false);
    EXPECT_TRUE(is("pressed"));
    EXPECT_EQ(clicks.count(), 0);
    sendKey(QEvent::KeyRelease, Qt::Key_Space, true);
    sendKey(QEvent::KeyPress, Qt::Key_Space, true);
    EXPECT_TRUE(is("pressed"));
    EXPECT_EQ(clicks.count(), 0) << "it is still held";
    sendKey(QEvent::KeyRelease, Qt::Key_Space, false);
    EXPECT_FALSE(is("pressed"));
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(PressAreaTest, SpaceThatWasPressedElsewhereIsNoClick) {
    takeKeyboard();
    sendKey(QEvent::KeyRelease, Qt::Key_Space, false);
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(PressAreaTest, SpaceDoesNothingOnceTheKeyboardHasGone) {
    takeKeyboard();
    sendKey(QEvent::KeyPress, Qt::Key_Space, false);
    button->setFocus(false);
    EXPECT_FALSE(is("pressed"));
    takeKeyboard();
    sendKey(QEvent::KeyRelease, Qt::Key_Space, false);
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(PressAreaTest, ReturnClicksAtOnce) {
    takeKeyboard();
    sendKey(QEvent::KeyPress, Qt::Key_Return, false);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_FALSE(is("pressed"));
    sendKey(QEvent::KeyRelease, Qt::Key_Return, false);
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(PressAreaTest, KeysThatMeanNothingToItGoOn) {
    QQuickItem* const around = show(R"(Item {
        property list<int> keys
        property alias button: button
        Keys.onPressed: event => keys.push(event.key)
        PressArea { id: button }
    })");
    around->property("button").value<QQuickItem*>()->forceActiveFocus(Qt::TabFocusReason);
    for (const Qt::Key which : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        key(which);
    for (const Qt::Key which : {Qt::Key_Escape, Qt::Key_A, Qt::Key_Down})
        key(which);
    QTest::keyClick(&window, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(
        around->property("keys").value<QList<int>>(),
        testing::ElementsAre(Qt::Key_Escape, Qt::Key_A, Qt::Key_Down, Qt::Key_Control, Qt::Key_Return));
}

// Looks

TEST_F(PressAreaTest, LooksPressedWhileItIsOrIsToldTo) {
    const QSignalSpy changes(button, SIGNAL(downChanged()));
    button->setProperty("down", true);
    EXPECT_TRUE(is("down"));
    EXPECT_FALSE(is("pressed"));
    clickOn(button);
    EXPECT_TRUE(is("down")) << "still told to";
    EXPECT_EQ(changes.count(), 1);
    button->setProperty("down", false);
    EXPECT_FALSE(is("down"));
    press();
    EXPECT_TRUE(is("down"));
    letGo(outside());
}

// What it holds

TEST_F(PressAreaTest, ContentLiesWithinThePadding) {
    EXPECT_EQ(frame(held("contentItem")), QRectF(10, 3, 50, 23));
    button->setWidth(100);
    button->setProperty("topPadding", 5);
    EXPECT_EQ(frame(held("contentItem")), QRectF(10, 5, 70, 21));
    button->setSize({20, 4});
    EXPECT_EQ(frame(held("contentItem")), QRectF(10, 5, 0, 0)) << "no less than nothing";
}

TEST_F(PressAreaTest, BackgroundLiesWithinTheInsetsBehindTheContent) {
    EXPECT_EQ(frame(held("background")), QRectF(-5, -4, 91, 41));
    button->setHeight(40);
    button->setProperty("leftInset", 2);
    EXPECT_EQ(frame(held("background")), QRectF(2, -4, 84, 51));
    EXPECT_LT(held("background")->z(), held("contentItem")->z());
}

TEST_F(PressAreaTest, TellsWhatTheContentAsksFor) {
    const QSignalSpy widths(button, SIGNAL(implicitContentWidthChanged()));
    const QSignalSpy heights(button, SIGNAL(implicitContentHeightChanged()));
    EXPECT_EQ(number("implicitContentWidth"), 24);
    EXPECT_EQ(number("implicitContentHeight"), 12);
    held("contentItem")->setImplicitWidth(30);
    EXPECT_EQ(number("implicitContentWidth"), 30);
    EXPECT_EQ(widths.count(), 1);
    EXPECT_EQ(heights.count(), 0);
    button->setProperty("contentItem", QVariant::fromValue<QQuickItem*>(nullptr));
    EXPECT_EQ(number("implicitContentWidth"), 0);
    EXPECT_EQ(number("implicitContentHeight"), 0);
    EXPECT_EQ(widths.count(), 2);
    EXPECT_EQ(heights.count(), 1);
}

TEST_F(PressAreaTest, ItemThatAnotherTakesThePlaceOfIsGone) {
    for (const char* const place : {"contentItem", "background"}) {
        const QPointer<QQuickItem> before = held(place);
        auto* const other = new QQuickItem(button);
        button->setProperty(place, QVariant::fromValue(other));
        EXPECT_EQ(held(place), other) << place;
        EXPECT_EQ(other->parentItem(), button) << place;
        EXPECT_FALSE(button->childItems().contains(before)) << place;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(before.isNull()) << place;
    }
}

TEST_F(PressAreaTest, SidesOfThePaddingAreToldOfOneByOne) {
    const QSignalSpy left(button, SIGNAL(leftPaddingChanged()));
    const QSignalSpy right(button, SIGNAL(rightPaddingChanged()));
    button->setProperty("leftPadding", 11);
    button->setProperty("leftPadding", 11);
    EXPECT_EQ(left.count(), 1);
    EXPECT_EQ(right.count(), 0);
}

// Assistive technology

TEST_F(PressAreaTest, PressIsToldToAssistiveTechnology) {
    QQuickItem* const pill = show(R"(PillButton { text: "Go" })");
    QAccessibleInterface* const known = accessible(QStringLiteral("Go"));
    ASSERT_NE(known, nullptr);
    EXPECT_FALSE(known->state().pressed);
    QTest::mousePress(&window, Qt::LeftButton, {}, middle(pill));
    EXPECT_TRUE(known->state().pressed);
    letGo(middle(pill));
    EXPECT_FALSE(known->state().pressed);
    EXPECT_FALSE(known->state().focused);
    pill->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(known->state().focused);
    EXPECT_THAT(known->actionInterface()->actionNames(),
                testing::Contains(QAccessibleActionInterface::pressAction()));
}

} // namespace
} // namespace selvane
