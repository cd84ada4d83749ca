#include "Selvane/UI/Progress/HeatmapCanvas.h"

#include "Selvane/UI/Progress/HeatmapDays.h"
#include "Selvane/UI/Progress/HeatmapLegendCanvas.h"
#include "Selvane/UI/Progress/HeatmapPainting.h"

#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <set>

namespace selvane {
namespace {

const QColor ink(0, 0, 0);

/// The popover's heatmap: the first square's corner lies at 32, 18.
class HeatmapCanvasTest : public testing::Test {
protected:
    HeatmapCanvasTest() {
        QLocale::setDefault(QLocale(QStringLiteral("en_US")));
        window.resize(400, 200);
        canvas.setParentItem(window.contentItem());
        canvas.setWeeks(18);
        canvas.setCell(12);
        canvas.setGap(4);
        canvas.setOfferedWidth(316);
        canvas.setInk(ink);
        canvas.classBegin();
        canvas.componentComplete();
        show();
    }
    ~HeatmapCanvasTest() override { QLocale::setDefault(QLocale::system()); }

    void show() { canvas.setDays(HeatmapData(days)); }

    void useKeyboard() {
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        canvas.forceActiveFocus();
    }
    void hover(QPoint point) {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        QTest::mouseMove(&window, point);
    }

    /// What is drawn, in black on white.
    [[nodiscard]] QImage picture(double scale = 1) {
        QImage image((canvas.size() * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        canvas.paint(&painter, canvas.size());
        return image;
    }
    static int greyAt(const QImage& image, int x, int y) { return qGray(image.pixel(x, y)); }
    /// White with black at this opacity.
    static int grey(double opacity) { return qRound(255 * (1 - opacity)); }

    /// Public for calls that QML makes.
    class Canvas : public HeatmapCanvas {
    public:
        using HeatmapCanvas::classBegin;
        using HeatmapCanvas::componentComplete;
    };

    HeatmapDays days{{{{2026, 3, 1}, 20}, {{2026, 3, 2}, 30}, {{2026, 3, 3}, 60}, {{2026, 3, 4}, 120}},
                     {},
                     60,
                     {2026, 3, 5},
                     Calendar::utc()};
    QQuickWindow window;
    Canvas canvas;
};

TEST_F(HeatmapCanvasTest, IsAsLargeAsItsContent) {
    EXPECT_EQ(canvas.implicitWidth(), 316);
    EXPECT_EQ(canvas.implicitHeight(), 126);
}

TEST_F(HeatmapCanvasTest, SquaresAreFilledByTheirLevel) {
    const QImage image = picture();
    // The last column: Sunday to Wednesday of levels 1 to 4.
    const int x = 32 + 17 * 16 + 6;
    EXPECT_NEAR(greyAt(image, x, 24), grey(0.25), 2);
    EXPECT_NEAR(greyAt(image, x, 24 + 16), grey(0.45), 2);
    EXPECT_NEAR(greyAt(image, x, 24 + 32), grey(0.7), 2);
    EXPECT_EQ(greyAt(image, x, 24 + 48), grey(1));
    EXPECT_NEAR(greyAt(image, x - 16, 24), grey(0.07), 2) << "a day without focus";
    EXPECT_EQ(greyAt(image, x, 24 + 5 * 16), 255) << "tomorrow";
}

TEST_F(HeatmapCanvasTest, SidesOfSquaresLieBetweenPixels) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage image = picture(scale);
        const int side = qRound(12 * scale);
        const int left = qRound((32 + 17 * 16) * scale);
        const int top = qRound((18 + 3 * 16) * scale);
        const int middle = top + side / 2;
        EXPECT_EQ(greyAt(image, left - 1, middle), 255) << scale;
        EXPECT_EQ(greyAt(image, left, middle), 0) << scale;
        EXPECT_EQ(greyAt(image, left + side - 1, middle), 0) << scale;
        EXPECT_EQ(greyAt(image, left + side / 2, top - 1), 255) << scale;
        EXPECT_EQ(greyAt(image, left + side / 2, top), 0) << scale;
        EXPECT_EQ(greyAt(image, left + side / 2, top + side - 1), 0) << scale;
        EXPECT_EQ(greyAt(image, left + side / 2, top + side), 255) << scale;
        EXPECT_GT(greyAt(image, left, top), 150) << "the corner is round";
    }
}

TEST_F(HeatmapCanvasTest, GapOfHalfAPixelLeavesSquaresSharpToo) {
    canvas.setGap(2.5);
    canvas.setOfferedWidth(400);
    canvas.setWeeks(2);
    days.minutesByDay.clear();
    for (int day = 20; day <= 28; ++day)
        days.minutesByDay[{2026, 2, day}] = 500;
    show();
    canvas.setWidth(400);
    const QImage image = picture();
    const int middle = 18 + 6;
    std::set<int> shades;
    for (int x = 32; x < 32 + 12; ++x)
        shades.insert(greyAt(image, x, middle));
    EXPECT_EQ(shades, std::set<int>{0}) << "of a row that no round corner reaches";
}

TEST_F(HeatmapCanvasTest, OutlineLiesInsideTheSquare) {
    days.frozenDays = {{2026, 2, 22}};
    show();
    const QImage image = picture();
    const auto over = [](double below, double above) { return grey(1 - (1 - below) * (1 - above)); };
    const int today = 18 + 4 * 16;
    const int x = 32 + 17 * 16;
    EXPECT_NEAR(greyAt(image, x + 6, today), over(0.07, 0.5), 2) << "today";
    EXPECT_NEAR(greyAt(image, x + 6, today + 11), over(0.07, 0.5), 2);
    EXPECT_EQ(greyAt(image, x + 6, today + 12), 255);
    EXPECT_NEAR(greyAt(image, x + 6, today + 1), grey(0.07), 2);
    EXPECT_NEAR(greyAt(image, x - 16 + 6, 18), over(0.07, 0.6), 2) << "a frozen day";
    EXPECT_NEAR(greyAt(image, x - 16, 18 + 6), over(0.07, 0.6), 2);
}

TEST_F(HeatmapCanvasTest, PointerBringsUpTheWordsOfItsDay) {
    EXPECT_EQ(canvas.tip(), QString());
    hover({32 + 17 * 16 + 5, 18 + 3 * 16 + 5});
    EXPECT_EQ(canvas.tip(), QStringLiteral("Mar 4 · 2h"));
    EXPECT_EQ(canvas.tipSquare(), QRectF(32 + 17 * 16, 18 + 3 * 16, 12, 12));
    EXPECT_TRUE(canvas.isTipOfPointer());
    EXPECT_EQ(canvas.cursorTip(), QString());
    hover({32 + 17 * 16 + 5, 18 + 5 * 16 + 5});
    EXPECT_EQ(canvas.tip(), QString()) << "tomorrow";
    hover({32 + 5, 18 + 5});
    EXPECT_EQ(canvas.tip(), QStringLiteral("Nov 2 · no focus"));
    hover({390, 190});
    EXPECT_EQ(canvas.tip(), QString());
}

TEST_F(HeatmapCanvasTest, KeyboardBeginsAtTodayAndGoesByDaysAndWeeks) {
    useKeyboard();
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 5 · no focus"));
    EXPECT_EQ(canvas.tip(), canvas.cursorTip());
    EXPECT_FALSE(canvas.isTipOfPointer());
    QTest::keyClick(&window, Qt::Key_Up);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 4 · 2h"));
    QTest::keyClick(&window, Qt::Key_Left);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Feb 25 · no focus"));
    QTest::keyClick(&window, Qt::Key_Down);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Feb 26 · no focus"));
    QTest::keyClick(&window, Qt::Key_Right);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 5 · no focus"));
    QTest::keyClick(&window, Qt::Key_Home);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Nov 2 · no focus"));
    EXPECT_EQ(canvas.cursorSquare(), QRectF(32, 18, 12, 12));
    QTest::keyClick(&window, Qt::Key_End);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 5 · no focus"));
}

TEST_F(HeatmapCanvasTest, DayIsChosenOnlyWhileItHasTheKeyboard) {
    useKeyboard();
    canvas.setFocus(false);
    EXPECT_EQ(canvas.tip(), QString());
    EXPECT_EQ(canvas.cursorSquare(), QRectF());
}

TEST_F(HeatmapCanvasTest, KeysWithModifiersAreNotItsOwn) {
    useKeyboard();
    QTest::keyClick(&window, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 5 · no focus"));
}

TEST_F(HeatmapCanvasTest, CursorOnTodayGoesAlongWithTheDay) {
    useKeyboard();
    days.today = {2026, 3, 6};
    show();
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 6 · no focus"));
}

TEST_F(HeatmapCanvasTest, ChosenDayStaysTheSameWhenAWeekBegins) {
    useKeyboard();
    QTest::keyClick(&window, Qt::Key_Up);
    ASSERT_EQ(canvas.cursorTip(), QStringLiteral("Mar 4 · 2h"));
    const QRectF before = canvas.cursorSquare();
    days.today = {2026, 3, 8};
    show();
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 4 · 2h"));
    EXPECT_EQ(canvas.cursorSquare(), before.translated(-16, 0)) << "a column to the left";
}

TEST_F(HeatmapCanvasTest, ChosenDayThatLeavesTheGridMakesWayForTheOldest) {
    useKeyboard();
    QTest::keyClick(&window, Qt::Key_Home);
    days.today = {2026, 3, 8};
    show();
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Nov 9 · no focus"));
}

TEST_F(HeatmapCanvasTest, CursorBroughtBackToTodayGoesAlongToo) {
    useKeyboard();
    QTest::keyClick(&window, Qt::Key_Up);
    QTest::keyClick(&window, Qt::Key_End);
    days.today = {2026, 3, 6};
    show();
    EXPECT_EQ(canvas.cursorTip(), QStringLiteral("Mar 6 · no focus"));
}

TEST_F(HeatmapCanvasTest, WithoutDaysNothingIsChosen) {
    canvas.setDays({});
    useKeyboard();
    QTest::keyClick(&window, Qt::Key_Up);
    hover({40, 24});
    EXPECT_EQ(canvas.tip(), QString());
}

TEST_F(HeatmapCanvasTest, ChangesAreToldOnce) {
    int changes = 0;
    QObject::connect(&canvas, &HeatmapCanvas::daysChanged, &canvas, [&] { ++changes; });
    const HeatmapData data(days);
    canvas.setDays(data);
    canvas.setDays(data);
    EXPECT_EQ(changes, 1);
}

TEST(HeatmapPainting, LevelsHaveTheirOpacities) {
    EXPECT_EQ(HeatmapPainting::opacityOfLevel(0), 0.07);
    EXPECT_EQ(HeatmapPainting::opacityOfLevel(1), 0.25);
    EXPECT_EQ(HeatmapPainting::opacityOfLevel(2), 0.45);
    EXPECT_EQ(HeatmapPainting::opacityOfLevel(3), 0.7);
    EXPECT_EQ(HeatmapPainting::opacityOfLevel(4), 1.0);
}

TEST(HeatmapLegend, HasASquareOfEachLevelBetweenItsWords) {
    HeatmapLegendCanvas legend;
    legend.setSize(QSizeF(legend.implicitWidth(), legend.implicitHeight()));
    legend.setInk(Qt::black);
    legend.setLabelInk(Qt::transparent);
    QImage image(legend.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    legend.paint(&painter, legend.size());

    std::vector<int> shades;
    const int middle = image.height() / 2;
    for (int x = 0; x < image.width(); ++x) {
        const int shade = qGray(image.pixel(x, middle));
        if (shade != 255 && (shades.empty() || shades.back() != shade))
            shades.push_back(shade);
    }
    ASSERT_EQ(shades.size(), 5U);
    for (std::size_t level = 0; level < shades.size(); ++level)
        EXPECT_NEAR(shades[level], 255 * (1 - HeatmapPainting::opacityOfLevel(static_cast<int>(level))), 2)
            << level;
}

} // namespace
} // namespace selvane
