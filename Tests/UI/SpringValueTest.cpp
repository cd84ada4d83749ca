#include "Selvane/UI/Controls/SpringValue.h"

#include "Support/Patience.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace selvane {
namespace {

/// As QML makes it, whole.
class SpringValueTest : public testing::Test {
protected:
    SpringValue& make(const char* properties) {
        QQmlComponent component(&_engine);
        component.setData(QByteArray("import Selvane.Controls\nSpringValue { ") + properties + " }", {});
        _value.reset(qobject_cast<SpringValue*>(component.create()));
        EXPECT_TRUE(_value) << component.errorString().toStdString();
        return *_value;
    }

private:
    QQmlEngine _engine;
    std::unique_ptr<SpringValue> _value;
};

TEST_F(SpringValueTest, BeginsAtItsTarget) {
    EXPECT_EQ(make("target: 0.7").value(), 0.7);
    EXPECT_EQ(make("").value(), 0);
}

TEST_F(SpringValueTest, GoesToANewTargetOverTime) {
    // So slow that a process which is held up for a while still sees it under way.
    SpringValue& value = make("target: 1; response: 20");
    const QSignalSpy changes(&value, &SpringValue::valueChanged);
    value.setTarget(0);
    EXPECT_EQ(value.target(), 0);
    EXPECT_GT(value.value(), 0.9) << "it has just set out";
    ASSERT_TRUE(QTest::qWaitFor([&] { return changes.count() > 2; }, test::patience));
    EXPECT_GT(value.value(), 0) << "it is on its way";
    EXPECT_LT(value.value(), 1) << "it is on its way";
    value.setResponse(0.1);
    value.setTarget(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() == 2; }, test::patience));
}

TEST_F(SpringValueTest, SwingsBeyondItsTargetWhereItIsLittleDamped) {
    // So slow that it stays beyond for two seconds.
    SpringValue& value = make("response: 5; dampingFraction: 0.3");
    value.setTarget(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() > 1.1 || value.value() == 1; }, test::patience));
    EXPECT_GT(value.value(), 1.1);
    value.setResponse(0.2);
    value.setTarget(0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() == 0; }, test::patience)) << "it comes to rest";
}

TEST_F(SpringValueTest, TurnsRoundWhereItIs) {
    SpringValue& value = make("response: 1");
    value.setTarget(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() > 0.2; }));
    const double place = value.value();
    value.setTarget(0);
    EXPECT_EQ(value.value(), place);
}

TEST_F(SpringValueTest, NextMotionBeginsWhereTheLastOneEnded) {
    SpringValue& value = make("target: 1; response: 0.05");
    std::vector<double> seen;
    QObject::connect(&value, &SpringValue::valueChanged, [&] { seen.push_back(value.value()); });
    value.setTarget(0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() == 0; }));
    seen.clear();
    value.setResponse(10);
    value.setTarget(1);
    EXPECT_THAT(seen, testing::Each(testing::Lt(0.1))) << "after one that had ended";
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() > 0.02; }));
    const double place = value.value();
    seen.clear();
    value.setTarget(0);
    EXPECT_THAT(seen, testing::Each(testing::DoubleNear(place, 0.1))) << "after one under way";
}

TEST_F(SpringValueTest, IsThereAtOnceWhileNothingMayMove) {
    SpringValue& value = make("animated: false");
    value.setTarget(1);
    EXPECT_EQ(value.value(), 1);
    value.setAnimated(true);
    value.setTarget(2);
    EXPECT_EQ(value.value(), 1);
    value.setAnimated(false);
    EXPECT_EQ(value.value(), 2) << "a motion under way ends";
    QTest::qWait(30);
    EXPECT_EQ(value.value(), 2);
}

TEST_F(SpringValueTest, MakesNothingBeforeItMoves) {
    SpringValue& value = make("target: 1");
    EXPECT_TRUE(value.children().isEmpty());
    value.setTarget(1);
    EXPECT_TRUE(value.children().isEmpty());
    value.setTarget(0);
    EXPECT_EQ(value.children().size(), 1);
}

} // namespace
} // namespace selvane
