#include "ControlsFixture.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <limits>

namespace selvane {
namespace {

/// A slider with steps of 0.1 whose handle, of a width of 20, has its middle between 10 and 110.
class SlideAreaTest : public test::ControlsFixture {
protected:
    QQuickItem* slider = show(R"(SlideArea {
        width: 120; height: 20; handleWidth: 20; position: 0.5
        Accessible.role: Accessible.Slider
        Accessible.name: "Volume"
    })");
    QSignalSpy moves{slider, SIGNAL(moved())};

    [[nodiscard]] double position() const { return slider->property("position").toDouble(); }
    void setPosition(double position) { slider->setProperty("position", position); }
    void takeKeyboard() { slider->forceActiveFocus(Qt::TabFocusReason); }

    [[nodiscard]] QPoint at(double x) const { return slider->mapToScene({x, 10}).toPoint(); }
    void press(double x) { QTest::mousePress(&window, Qt::LeftButton, {}, at(x)); }
    void drag(double x) { QTest::mouseMove(&window, at(x)); }
    void letGo(double x) { QTest::mouseRelease(&window, Qt::LeftButton, {}, at(x)); }

    /// Turns the wheel above the slider by eighths of a degree; 120 is a notch away from the user.
    void turnWheel(QPoint angle, bool inverted = false) {
        QWheelEvent event(at(60), window.mapToGlobal(at(60)), {}, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, inverted);
        QCoreApplication::sendEvent(&window, &event);
    }
};

// The owner

TEST_F(SlideAreaTest, OwnerSetsThePositionAndIsNotToldOfIt) {
    setPosition(0.3);
    EXPECT_DOUBLE_EQ(position(), 0.3);
    setPosition(7);
    EXPECT_DOUBLE_EQ(position(), 1);
    setPosition(-7);
    EXPECT_DOUBLE_EQ(position(), 0);
    EXPECT_EQ(moves.count(), 0);
}

TEST_F(SlideAreaTest, WhatIsNotANumberIsNoPosition) {
    setPosition(std::numeric_limits<double>::quiet_NaN());
    EXPECT_DOUBLE_EQ(position(), 0.5);
    slider->setProperty("value", std::numeric_limits<double>::quiet_NaN());
    EXPECT_DOUBLE_EQ(position(), 0.5);
    EXPECT_EQ(moves.count(), 0);
}

TEST_F(SlideAreaTest, AssistiveTechnologyIsToldOfEveryMove) {
    const QMetaObject* const type = slider->metaObject();
    const QMetaProperty value = type->property(type->indexOfProperty("value"));
    // Qt listens to no other name.
    EXPECT_EQ(value.notifySignal().name(), "valueChanged");
    const QSignalSpy told(slider, SIGNAL(valueChanged()));
    setPosition(0.7);
    setPosition(0.7);
    EXPECT_EQ(told.count(), 1);
}

// The mouse

TEST_F(SlideAreaTest, PressBringsTheHandleToThePointer) {
    struct Row {
        const char* name;
        double x;
        double position;
    };
    for (const Row& row :
         {Row{"the beginning", 0, 0}, Row{"the handle's middle at the beginning", 10, 0},
          Row{"between two steps", 34, 0.24}, Row{"a step", 80, 0.7}, Row{"the end", 119, 1}}) {
        setPosition(0.5);
        press(row.x);
        EXPECT_DOUBLE_EQ(position(), row.position) << row.name;
        letGo(row.x);
        EXPECT_DOUBLE_EQ(position(), row.position) << row.name;
    }
    EXPECT_EQ(moves.count(), 5);
}

TEST_F(SlideAreaTest, PressOnTheHandleMovesNothing) {
    for (const double x : {51.0, 60.0, 69.0}) {
        press(x);
        letGo(x);
        EXPECT_EQ(moves.count(), 0) << x;
    }
}

TEST_F(SlideAreaTest, HandleIsHeldWhereItWasTaken) {
    press(66);
    drag(76);
    EXPECT_DOUBLE_EQ(position(), 0.6);
    letGo(71);
    EXPECT_DOUBLE_EQ(position(), 0.55);
    press(20);
    EXPECT_DOUBLE_EQ(position(), 0.1) << "elsewhere the handle comes";
    letGo(20);
}

TEST_F(SlideAreaTest, DragFollowsThePointerAndEndsAtTheEnds) {
    press(60);
    drag(63);
    EXPECT_DOUBLE_EQ(position(), 0.53);
    drag(72);
    EXPECT_DOUBLE_EQ(position(), 0.62);
    drag(300);
    EXPECT_DOUBLE_EQ(position(), 1);
    drag(-300);
    EXPECT_DOUBLE_EQ(position(), 0);
    letGo(20);
    EXPECT_DOUBLE_EQ(position(), 0.1) << "where it was let go";
    EXPECT_EQ(moves.count(), 5);
}

TEST_F(SlideAreaTest, PointerMovesNothingByItself) {
    drag(20);
    drag(100);
    EXPECT_EQ(moves.count(), 0);
}

TEST_F(SlideAreaTest, OtherButtonsOfTheMouseDoNothing) {
    QTest::mouseClick(&window, Qt::RightButton, {}, at(20));
    QTest::mouseClick(&window, Qt::MiddleButton, {}, at(20));
    EXPECT_EQ(moves.count(), 0);
}

TEST_F(SlideAreaTest, ClickLeavesTheKeyboardWhereItIs) {
    press(20);
    letGo(20);
    EXPECT_FALSE(slider->hasActiveFocus());
}

TEST_F(SlideAreaTest, HandleThatFillsItCantBeMoved) {
    slider->setProperty("handleWidth", 120);
    press(20);
    letGo(100);
    EXPECT_EQ(moves.count(), 0);
}

TEST_F(SlideAreaTest, WheelMovesItByAStepANotch) {
    turnWheel({0, 120});
    EXPECT_DOUBLE_EQ(position(), 0.6);
    turnWheel({0, -240});
    EXPECT_DOUBLE_EQ(position(), 0.4);
    turnWheel({0, 60});
    EXPECT_DOUBLE_EQ(position(), 0.45) << "a finer wheel";
    turnWheel({120, 0});
    EXPECT_DOUBLE_EQ(position(), 0.55) << "sideways";
    turnWheel({0, 120}, true);
    EXPECT_DOUBLE_EQ(position(), 0.45) << "a wheel that is turned round";
    EXPECT_EQ(moves.count(), 5);
}

TEST_F(SlideAreaTest, WheelIsForOthersOnceItIsAtItsEnd) {
    QQuickItem* const around = show(R"(Item {
        width: 120; height: 20
        property int turns: 0
        WheelHandler { onWheel: parent.turns += 1 }
        SlideArea { anchors.fill: parent; position: 0.95 }
    })");
    turnWheel({0, 120});
    EXPECT_EQ(around->property("turns").toInt(), 0);
    turnWheel({0, 120});
    EXPECT_EQ(around->property("turns").toInt(), 1);
}

// The keyboard

TEST_F(SlideAreaTest, KeysMoveItByStepsOrToTheEnds) {
    takeKeyboard();
    EXPECT_TRUE(slider->property("visualFocus").toBool());
    struct Row {
        Qt::Key key;
        double position;
    };
    for (const Row& row :
         {Row{Qt::Key_Right, 0.6}, Row{Qt::Key_Up, 0.6}, Row{Qt::Key_Left, 0.4}, Row{Qt::Key_Down, 0.4},
          Row{Qt::Key_PageUp, 0.9}, Row{Qt::Key_PageDown, 0.1}, Row{Qt::Key_Home, 0}, Row{Qt::Key_End, 1}}) {
        setPosition(0.5);
        key(row.key);
        EXPECT_DOUBLE_EQ(position(), row.position) << row.key;
    }
    EXPECT_EQ(moves.count(), 8);
}

TEST_F(SlideAreaTest, KeysLeaveItAtItsEnds) {
    takeKeyboard();
    setPosition(0.9);
    key(Qt::Key_PageUp);
    EXPECT_DOUBLE_EQ(position(), 1);
    for (const Qt::Key which : {Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_End})
        key(which);
    EXPECT_EQ(moves.count(), 1) << "there is no further";
}

TEST_F(SlideAreaTest, OtherKeysAreForOthers) {
    QQuickItem* const around = show(R"(Item {
        property list<int> keys
        property alias slider: slider
        Keys.onPressed: event => keys.push(event.key)
        SlideArea { id: slider }
    })");
    around->property("slider").value<QQuickItem*>()->forceActiveFocus(Qt::TabFocusReason);
    for (const Qt::Key which : {Qt::Key_Space, Qt::Key_Left, Qt::Key_End, Qt::Key_Escape})
        key(which);
    EXPECT_THAT(around->property("keys").value<QList<int>>(),
                testing::ElementsAre(Qt::Key_Space, Qt::Key_Escape));
}

TEST_F(SlideAreaTest, NothingMovesItWhileItIsDisabled) {
    takeKeyboard();
    slider->setEnabled(false);
    key(Qt::Key_Right);
    press(20);
    letGo(20);
    turnWheel({0, 120});
    EXPECT_EQ(moves.count(), 0);
}

// Assistive technology

TEST_F(SlideAreaTest, AssistiveTechnologyKnowsAndMovesIt) {
    QAccessibleInterface* const known = accessible(QStringLiteral("Volume"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::Slider);
    EXPECT_TRUE(known->state().focusable);
    ASSERT_NE(known->valueInterface(), nullptr);
    QAccessibleValueInterface& value = *known->valueInterface();
    EXPECT_DOUBLE_EQ(value.currentValue().toDouble(), 0.5);
    EXPECT_TRUE(value.minimumValue().isValid());
    EXPECT_DOUBLE_EQ(value.minimumValue().toDouble(), 0);
    EXPECT_DOUBLE_EQ(value.maximumValue().toDouble(), 1);
    EXPECT_DOUBLE_EQ(value.minimumStepSize().toDouble(), 0.1);

    value.setCurrentValue(0.23);
    EXPECT_DOUBLE_EQ(position(), 0.23);
    known->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_DOUBLE_EQ(position(), 0.33);
    known->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_DOUBLE_EQ(position(), 0.23);
    EXPECT_EQ(moves.count(), 3) << "the owner hears of it";
}

} // namespace
} // namespace selvane
