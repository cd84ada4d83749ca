#include "Selvane/UI/Controls/SpringValue.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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
    SpringValue& value = make("target: 1; response: 0.1");
    const QSignalSpy changes(&value, &SpringValue::valueChanged);
    value.setTarget(0);
    EXPECT_EQ(value.target(), 0);
    EXPECT_GT(value.value(), 0.9) << "it has just set out";
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() == 0; }));
    EXPECT_GT(changes.count(), 2);
}

TEST_F(SpringValueTest, SwingsBeyondItsTargetWhereItIsLittleDamped) {
    SpringValue& value = make("response: 0.2; dampingFraction: 0.3");
    double most = 0;
    QObject::connect(&value, &SpringValue::valueChanged, [&] { most = std::max(most, value.value()); });
    value.setTarget(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() == 1; }));
    EXPECT_GT(most, 1.1);
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
