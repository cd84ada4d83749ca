#include "Selvane/UI/Controls/Symbol.h"

#include "Selvane/UI/Symbols/SymbolImages.h"

#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

void qml_register_types_Selvane_Controls();

namespace selvane {
namespace {

constexpr int side = 60;

/// Tells where its picture was put.
class PlacedSymbol : public Symbol {
public:
    /// In the item's own coordinates.
    [[nodiscard]] QRectF rect() const { return _rect; }

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override {
        QSGNode* const made = Symbol::updatePaintNode(node, data);
        _rect = made == nullptr ? QRectF() : static_cast<QSGImageNode*>(made)->rect();
        return made;
    }

private:
    QRectF _rect;
};

/// A white window with one symbol in its top left corner.
class SymbolItem : public testing::Test {
protected:
    SymbolItem() {
        _window.resize(side, side);
        _window.setColor(Qt::white);
        symbol.setParentItem(_window.contentItem());
        symbol.setName(QStringLiteral("flame"));
        symbol.setSize(16);
        symbol.setWidth(symbol.implicitWidth());
        symbol.setHeight(symbol.implicitHeight());
    }

    /// What the window shows.
    [[nodiscard]] QImage shown() { return _window.grabWindow().convertToFormat(QImage::Format_RGB32); }

    /// A window that shows the picture of the style with its middle at `middle`.
    [[nodiscard]] QImage window(const QString& name, SymbolStyle style, QColor color, QPointF middle) const {
        const double ratio = _window.effectiveDevicePixelRatio();
        style.pixelRatio = ratio;
        QImage image(QSize(side, side) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        SymbolImages images;
        const QImage picture = images.tinted(name, style, color);
        const QSizeF extent = picture.deviceIndependentSize();
        QPainter painter(&image);
        painter.drawImage(middle - QPointF(extent.width(), extent.height()) / 2, picture);
        return image;
    }

    [[nodiscard]] QImage empty() const { return window(QString(), {16}, Qt::black, {}); }

    PlacedSymbol symbol;

private:
    QQuickWindow _window;
};

// Of the square of twenty pixels that sixteen points make.
constexpr QPointF middle(10, 10);

TEST_F(SymbolItem, ShowsThePictureOfItsStyle) {
    symbol.setWeight(Symbol::Bold);
    symbol.setColor(QColor(10, 60, 200));
    EXPECT_EQ(shown(),
              window(QStringLiteral("flame"), {16, SymbolWeight::bold}, QColor(10, 60, 200), middle));
}

TEST_F(SymbolItem, FollowsEachProperty) {
    symbol.setName(QStringLiteral("cloud.rain"));
    EXPECT_EQ(shown(), window(QStringLiteral("cloud.rain"), {16, SymbolWeight::medium}, Qt::black, middle));
    symbol.setWeight(Symbol::Light);
    EXPECT_EQ(shown(), window(QStringLiteral("cloud.rain"), {16, SymbolWeight::light}, Qt::black, middle));
    symbol.setColor(Qt::red);
    EXPECT_EQ(shown(), window(QStringLiteral("cloud.rain"), {16, SymbolWeight::light}, Qt::red, middle));
    symbol.setLevel(1);
    EXPECT_EQ(shown(),
              window(QStringLiteral("cloud.rain"), {16, SymbolWeight::light, 1.0, 1}, Qt::red, middle));
    symbol.setSize(8);
    EXPECT_EQ(shown(),
              window(QStringLiteral("cloud.rain"), {8, SymbolWeight::light, 1.0, 1}, Qt::red, middle))
        << "still in the middle";
}

TEST_F(SymbolItem, StaysInTheMiddle) {
    symbol.setWidth(50);
    symbol.setHeight(40);
    EXPECT_EQ(shown(),
              window(QStringLiteral("flame"), {16, SymbolWeight::medium}, Qt::black, QPointF(25, 20)));
}

TEST_F(SymbolItem, FallsOnWholePixels) {
    symbol.setPosition(QPointF(10.3, 4.7));
    symbol.setWidth(21);
    EXPECT_EQ(shown(),
              window(QStringLiteral("flame"), {16, SymbolWeight::medium}, Qt::black, QPointF(21, 15)));
    const QRectF inWindow = symbol.rect().translated(symbol.position());
    EXPECT_NEAR(inWindow.x(), 9, 1e-9);
    EXPECT_NEAR(inWindow.y(), 3, 1e-9);
    EXPECT_EQ(inWindow.size(), QSizeF(24, 24)) << "not stretched either";
}

TEST_F(SymbolItem, FallsOnWholePixelsWhenTurned) {
    symbol.setPosition(QPointF(10.3, 4.7));
    symbol.setRotation(-90);
    ASSERT_FALSE(shown().isNull());
    const QRectF inWindow = symbol.mapRectToScene(symbol.rect());
    // The middle of the item is at 20.3 and 14.7, the nearest that a picture of 24 pixels can be 20 and 15.
    EXPECT_NEAR(inWindow.center().x(), 20, 1e-9);
    EXPECT_NEAR(inWindow.center().y(), 15, 1e-9);
}

TEST_F(SymbolItem, WantsASquareOfWholePixels) {
    symbol.setSize(13);
    EXPECT_EQ(symbol.implicitWidth(), 16);
    symbol.setSize(14);
    EXPECT_EQ(symbol.implicitWidth(), 18);
    EXPECT_EQ(symbol.implicitHeight(), 18);
}

TEST_F(SymbolItem, ShowsNothingWithoutANameAndSomethingAgain) {
    const QImage before = shown();
    EXPECT_NE(before, empty());
    symbol.setName(QString());
    EXPECT_EQ(shown(), empty());
    symbol.setName(QStringLiteral("flame"));
    EXPECT_EQ(shown(), before);
}

TEST_F(SymbolItem, ReplacedSymbolShrinksAndGrowsAgainAsTheOther) {
    const QSignalSpy shownNames(&symbol, &Symbol::shownChanged);
    symbol.setReplacing(true);
    symbol.setName(QStringLiteral("leaf"));
    EXPECT_EQ(symbol.shown(), QStringLiteral("flame"));
    symbol.setName(QStringLiteral("waveform"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return symbol.scale() < 0.5; }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return symbol.shown() == QStringLiteral("waveform"); }));
    EXPECT_LT(symbol.scale(), 0.5);
    ASSERT_TRUE(QTest::qWaitFor([this] { return symbol.scale() == 1; }));
    EXPECT_EQ(shownNames.count(), 1) << "what came between was never seen";
    EXPECT_EQ(shown(), window(QStringLiteral("waveform"), {16, SymbolWeight::medium}, Qt::black, middle));
}

TEST_F(SymbolItem, WithoutReplacingTheOtherIsThereAtOnce) {
    symbol.setName(QStringLiteral("leaf"));
    EXPECT_EQ(symbol.shown(), QStringLiteral("leaf"));
    symbol.setReplacing(true);
    symbol.setName(QStringLiteral("waveform"));
    symbol.setReplacing(false);
    EXPECT_EQ(symbol.shown(), QStringLiteral("waveform")) << "also in the middle of it";
    EXPECT_EQ(symbol.scale(), 1);
}

TEST_F(SymbolItem, TellsOfChangesOnce) {
    QSignalSpy names(&symbol, &Symbol::nameChanged);
    QSignalSpy sizes(&symbol, &Symbol::sizeChanged);
    QSignalSpy weights(&symbol, &Symbol::weightChanged);
    QSignalSpy colors(&symbol, &Symbol::colorChanged);
    QSignalSpy levels(&symbol, &Symbol::levelChanged);
    for (int time = 0; time < 2; ++time) {
        symbol.setName(QStringLiteral("waveform"));
        symbol.setSize(20);
        symbol.setWeight(Symbol::Semibold);
        symbol.setColor(Qt::blue);
        symbol.setLevel(2);
    }
    for (const QSignalSpy* const spy : {&names, &sizes, &weights, &colors, &levels})
        EXPECT_EQ(spy->count(), 1);
    EXPECT_EQ(symbol.parts(), 5);
}

TEST(SymbolType, IsKnownToViewsWithItsWeights) {
    qml_register_types_Selvane_Controls();
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\n"
                      "import Selvane.Controls\n"
                      "Symbol { name: \"waveform\"; size: 9; weight: Symbol.Semibold; color: \"#80ff0000\"\n"
                      "    level: parts - 2 }",
                      QUrl(QStringLiteral("qrc:/SymbolTest.qml")));
    const std::unique_ptr<QObject> object(component.create());
    auto* const symbol = qobject_cast<Symbol*>(object.get());
    ASSERT_NE(symbol, nullptr) << component.errorString().toStdString();
    EXPECT_EQ(symbol->weight(), Symbol::Semibold);
    EXPECT_EQ(symbol->color(), QColor(255, 0, 0, 128));
    EXPECT_EQ(symbol->level(), 3);
}

} // namespace
} // namespace selvane
