#include "FaceWindow.h"
#include "Selvane/UI/Controls/HoverTip.h"
#include "Selvane/UI/Controls/Symbol.h"
#include "Selvane/UI/Timer/BarFill.h"
#include "Selvane/UI/Timer/CycleDashes.h"
#include "Selvane/UI/Timer/RingArc.h"
#include "Selvane/UI/Timer/TimeText.h"
#include "Support/Patience.h"

#include <QFontMetricsF>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace selvane {
namespace {

/// A content in black on white, in the window's corner.
QByteArray onPaper(const char* content) {
    return QByteArray("Rectangle { anchors.fill: parent; color: 'white'; ") + content + " }";
}

double darkness(const QImage& picture, QPoint place) {
    return 1 - qGray(picture.pixel(place)) / 255.0;
}

QColor colorOf(const QQuickItem* item, const char* property = "color") {
    return item->property(property).value<QColor>();
}

/// What the timer face looks like: its measures, strengths and shades.
class TimerFaceLooks : public testing::Test {
protected:
    TimerFaceLooks() { face.appearance.setReducesMotion(true); }

    void open(TimerStyle style) {
        face.settings().timerStyle.set(style);
        face.open();
    }

    [[nodiscard]] QRectF place(const QString& name) const { return place(face.find(name)); }
    [[nodiscard]] static QRectF place(const QQuickItem* item) {
        return item ? item->mapRectToScene(QRectF(0, 0, item->width(), item->height())) : QRectF();
    }
    [[nodiscard]] QRectF glyph() const { return place(QStringLiteral("Focus icon")); }
    [[nodiscard]] QRectF time() const { return place(face.item<TimeText>()); }
    [[nodiscard]] QRectF dashes() const { return place(QStringLiteral("Session 1 of 4")); }
    [[nodiscard]] QRectF caption() const { return place(QStringLiteral("FOCUS")); }
    [[nodiscard]] QRectF frame() const { return place(face.itemOf("TimerFace")); }

    [[nodiscard]] static QQuickItem* part(const QQuickItem* control, const char* name) {
        return control->property(name).value<QQuickItem*>();
    }
    [[nodiscard]] double shade(const QString& name) const {
        return colorOf(part(face.find(name), "background")).alphaF();
    }
    [[nodiscard]] static QColor secondary(const test::FaceWindow& window) {
        return colorOf(window.itemOf("FaceCaption"));
    }

    test::FaceWindow face;
};

TEST_F(TimerFaceLooks, RingHoldsTheGlyphTheTimeTheDashesAndTheWord) {
    open(TimerStyle::ring);
    EXPECT_DOUBLE_EQ(frame().height(), 188);
    EXPECT_EQ(place(face.itemOf("RingFace")).size(), QSizeF(184, 184));
    EXPECT_DOUBLE_EQ(face.item<TimeText>()->size(), 40);
    EXPECT_EQ(glyph().size(), QSizeF(26, 18));
    EXPECT_DOUBLE_EQ(time().top(), glyph().bottom());
    EXPECT_DOUBLE_EQ(time().height(), 48);
    EXPECT_DOUBLE_EQ(dashes().top(), time().bottom());
    EXPECT_DOUBLE_EQ(dashes().height(), 6 + 3);
    EXPECT_DOUBLE_EQ(caption().top(), dashes().bottom());
    EXPECT_DOUBLE_EQ(caption().height(), 6 + 14);
    EXPECT_NEAR((glyph().top() + caption().bottom()) / 2, frame().center().y(), 0.5);
}

TEST_F(TimerFaceLooks, BarStandsBelowTheTimeAndAboveTheDashes) {
    open(TimerStyle::bar);
    EXPECT_DOUBLE_EQ(frame().height(), 128);
    EXPECT_DOUBLE_EQ(face.item<TimeText>()->size(), 52);
    EXPECT_EQ(glyph().size(), QSizeF(26, 16));
    EXPECT_DOUBLE_EQ(caption().left() - glyph().right(), 6);
    EXPECT_NEAR(caption().center().y(), glyph().center().y(), 0.5);
    EXPECT_DOUBLE_EQ(time().top() - glyph().bottom(), 2);
    EXPECT_DOUBLE_EQ(time().height(), 62);
    const QRectF fill = place(face.item<BarFill>());
    EXPECT_DOUBLE_EQ(fill.width(), 220 + 2 * 9);
    EXPECT_DOUBLE_EQ(fill.center().y() - 6 - time().bottom(), 8) << "12 high, with a padding of 8";
    EXPECT_DOUBLE_EQ(dashes().top(), fill.center().y() + 6);
    EXPECT_DOUBLE_EQ(dashes().height(), 12 + 3);
}

TEST_F(TimerFaceLooks, MinimalIsATimeWithItsSigns) {
    open(TimerStyle::minimal);
    EXPECT_DOUBLE_EQ(frame().height(), 132);
    EXPECT_DOUBLE_EQ(face.item<TimeText>()->size(), 60);
    EXPECT_EQ(glyph().size(), QSizeF(26, 16));
    EXPECT_DOUBLE_EQ(time().top(), glyph().bottom());
    EXPECT_DOUBLE_EQ(time().height(), 72);
    EXPECT_DOUBLE_EQ(dashes().top(), time().bottom());
    EXPECT_DOUBLE_EQ(dashes().height(), 6 + 3);
    EXPECT_DOUBLE_EQ(caption().top(), dashes().bottom());
    EXPECT_DOUBLE_EQ(caption().height(), 8 + 14);
}

TEST_F(TimerFaceLooks, WordIsSmallSpacedAndStrong) {
    open(TimerStyle::ring);
    const QFont font = face.itemOf("FaceCaption")->property("font").value<QFont>();
    EXPECT_EQ(font.pixelSize(), 11);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
    EXPECT_NEAR(font.letterSpacing(), 1.1, 0.01);
}

TEST_F(TimerFaceLooks, ArcAndBarAreWeakerInBreaksAndPauses) {
    const auto expectStrengths = [&](const auto strength) {
        EXPECT_DOUBLE_EQ(strength(), 1);
        for (const Phase phase : {Phase::shortBreak, Phase::longBreak}) {
            face.engine().select(phase);
            EXPECT_TRUE(QTest::qWaitFor([&] { return strength() == 0.75; })) << rawValue(phase);
        }
        face.engine().start();
        face.engine().pause();
        EXPECT_TRUE(QTest::qWaitFor([&] { return strength() == 0.5; }));
        face.engine().reset();
        face.engine().select(Phase::focus);
    };
    open(TimerStyle::ring);
    expectStrengths([&] { return face.item<RingArc>()->opacity(); });
    open(TimerStyle::bar);
    expectStrengths([&] { return face.item<BarFill>()->opacity(); });
}

TEST_F(TimerFaceLooks, TracksAreFaint) {
    face.open(onPaper("RingBezel { ink: 'black' }"));
    EXPECT_NEAR(darkness(face.picture(), {92, 12}), 0.08, 0.005);
    open(TimerStyle::bar);
    const QPoint middle = place(face.item<BarFill>()).center().toPoint();
    const QImage picture = face.picture();
    const double ground = darkness(picture, middle + QPoint(0, 30));
    EXPECT_NEAR(darkness(picture, middle) - ground, 0.08, 0.015);
    EXPECT_NEAR(darkness(picture, middle + QPoint(0, 5)), ground, 0.005) << "8 high";
    EXPECT_NEAR(darkness(picture, middle + QPoint(0, -6)), ground, 0.005);
}

TEST_F(TimerFaceLooks, HeadsAreHigherThanTheirLines) {
    face.open(onPaper("RingArc { ink: 'black'; progress: 0.25 }"));
    EXPECT_GT(darkness(face.picture(), {96 + 80 + 5, 96}), 0.9);
    EXPECT_LT(darkness(face.picture(), {96 - 80, 96}), 0.01) << "no line beyond the head";
    face.open(onPaper("BarFill { ink: 'black'; progress: 0.5 }"));
    EXPECT_GT(darkness(face.picture(), {9 + 106, 10}), 0.9);
    EXPECT_LT(darkness(face.picture(), {9 + 50, 10}), 0.01) << "the line is lower";
    EXPECT_LT(darkness(face.picture(), {9 + 150, 15}), 0.01);
}

TEST_F(TimerFaceLooks, HeadIsGoneWhereThereIsNoProgress) {
    face.open(onPaper("RingArc { ink: 'black' } BarFill { y: 230; ink: 'black' }"));
    const QImage picture = face.picture();
    EXPECT_LT(darkness(picture, {96, 16}), 0.01);
    EXPECT_LT(darkness(picture, {9 + 4, 245}), 0.01);
}

/// The darkest place of a picture at a distance from the middle of the ring.
double darkestOnCircle(const QImage& picture, double radius) {
    double darkest = 0;
    for (int degrees = 0; degrees < 360; ++degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        const QPointF place(96 + radius * std::sin(angle), 96 - radius * std::cos(angle));
        darkest =
            std::max(darkest, darkness(picture, {static_cast<int>(place.x()), static_cast<int>(place.y())}));
    }
    return darkest;
}

TEST_F(TimerFaceLooks, HeadFadesOnItsWayToNothing) {
    face.open(onPaper("RingArc { ink: 'black'; progress: 0.5 }"));
    EXPECT_GT(darkestOnCircle(face.picture(), 85), 0.9);
    auto* const arc = face.item<RingArc>();
    arc->setProgress(0);
    (void)face.picture();
    ASSERT_TRUE(QTest::qWaitFor([&] { return arc->headPresence() < 0.3; }));
    EXPECT_LT(darkestOnCircle(face.picture(), 85), 0.75);

    face.open(onPaper("BarFill { ink: 'black'; progress: 0.9 }"));
    auto* const fill = face.item<BarFill>();
    (void)face.picture();
    fill->setProgress(0);
    (void)face.picture();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fill->headPresence() < 0.3; }));
    const QImage picture = face.picture();
    double darkest = 0;
    for (int x = 0; x < 238; ++x)
        darkest = std::max(darkest, darkness(picture, {x, 10}));
    EXPECT_LT(darkest, 0.75);
}

TEST_F(TimerFaceLooks, DashesAreSevenWideAndFourApart) {
    face.open(onPaper("CycleDashes { ink: 'black'; length: 4; position: 5 }"));
    const auto* const dashes = face.item<CycleDashes>();
    EXPECT_EQ(dashes->size(), QSizeF(4 * 7 + 3 * 4, 3));
    const QImage picture = face.picture();
    for (int dash = 0; dash < 4; ++dash) {
        EXPECT_GT(darkness(picture, {dash * 11 + 3, 1}), 0.95) << dash;
        EXPECT_GT(darkness(picture, {dash * 11 + 6, 1}), 0.5) << dash;
        for (const int gap : {7, 8, 9, 10})
            EXPECT_LT(darkness(picture, {dash * 11 + gap, 1}), 0.05) << dash << " " << gap;
    }
}

TEST_F(TimerFaceLooks, DashesTellByTheirStrengthWhatIsOverCurrentAndAhead) {
    face.open(onPaper("CycleDashes { ink: 'black'; length: 3; position: 2 }"));
    const QImage picture = face.picture();
    EXPECT_NEAR(darkness(picture, {3, 1}), 1, 0.01);
    EXPECT_NEAR(darkness(picture, {14, 1}), 0.5, 0.01);
    EXPECT_NEAR(darkness(picture, {25, 1}), 0.15, 0.01);
}

TEST_F(TimerFaceLooks, PulsingDashIsDrawnAgainAndAgain) {
    face.open(onPaper("CycleDashes { ink: 'black'; length: 2; isRunning: true }"));
    const auto current = [&] { return darkness(face.picture(), {3, 1}); };
    // A process that is held up may miss a pulse or two.
    EXPECT_TRUE(QTest::qWaitFor([&] { return current() < 0.4; }, test::patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return current() > 0.6; }, test::patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return current() < 0.5; }, test::patience)) << "and goes again";
}

TEST_F(TimerFaceLooks, DashesExplainThemselvesToThePointer) {
    open(TimerStyle::ring);
    const auto* const tip = face.item<CycleDashes>()->findChild<HoverTip*>();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->text(), QStringLiteral("Session 1 of 4 before a long break"));
}

TEST_F(TimerFaceLooks, EditorsHaveTheirTooltips) {
    open(TimerStyle::ring);
    EXPECT_EQ(face.find(QStringLiteral("Focus icon"))->property("tooltip").toString(),
              QStringLiteral("Change this icon"));
    EXPECT_EQ(face.itemOf("TimeButton")->property("tooltip").toString(),
              QStringLiteral("Click to type the minutes"));
    EXPECT_EQ(face.itemOf("TimeButton")->property("accessibleName").toString(),
              QStringLiteral("25:00 remaining"));
}

TEST_F(TimerFaceLooks, GlyphIsStrongerWithAShadeWhileThePointerIsThere) {
    open(TimerStyle::ring);
    const QString name = QStringLiteral("Focus icon");
    const auto* const symbol = face.item<Symbol>();
    EXPECT_DOUBLE_EQ(symbol->size(), 13);
    EXPECT_EQ(symbol->weight(), Symbol::Medium);
    EXPECT_EQ(symbol->color(), secondary(face));
    EXPECT_DOUBLE_EQ(shade(name), 0);
    face.hover(name);
    EXPECT_EQ(symbol->color(), colorOf(face.item<TimeText>()));
    EXPECT_NEAR(shade(name), 0.07, 0.005);
}

TEST_F(TimerFaceLooks, GlyphHasNoShadeOnlyBecauseItsGridIsOpen) {
    open(TimerStyle::ring);
    face.press(QStringLiteral("Focus icon"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("leaf")) != nullptr; }));
    EXPECT_DOUBLE_EQ(colorOf(part(face.itemOf("PhaseGlyph"), "background")).alphaF(), 0);
}

TEST_F(TimerFaceLooks, NoIconIsAFaintDot) {
    face.settings().focusSymbol.set("");
    open(TimerStyle::ring);
    const auto parts = face.itemOf("GlyphDrawing")->childItems();
    const auto dot = std::ranges::find_if(parts, [](const QQuickItem* item) { return item->width() == 3; });
    ASSERT_NE(dot, parts.end());
    EXPECT_TRUE((*dot)->isVisible());
    EXPECT_EQ((*dot)->size(), QSizeF(3, 3));
    EXPECT_DOUBLE_EQ((*dot)->opacity(), 0.3);
    EXPECT_FALSE(face.item<Symbol>()->isVisible());
    face.hover(QStringLiteral("Focus icon"));
    EXPECT_DOUBLE_EQ((*dot)->opacity(), 0.8);
}

TEST_F(TimerFaceLooks, TilesStandInARegularGrid) {
    face.open("SymbolGrid { selection: 'leaf' }");
    const QRectF first = place(QStringLiteral("No icon"));
    EXPECT_EQ(first.size(), QSizeF(32, 32));
    EXPECT_EQ(place(QStringLiteral("eye")), first.translated(38, 0));
    EXPECT_EQ(place(QStringLiteral("target")), first.translated(5 * 38, 0));
    EXPECT_EQ(place(QStringLiteral("leaf")), first.translated(0, 38));
}

TEST_F(TimerFaceLooks, SelectedTileIsStrongerAndHasABorder) {
    face.open(
        "SymbolGrid { selection: 'leaf' } FaceCaption { words: 'x' } TimeText { color: Theme.primaryText }");
    const auto symbolColor = [&](const QString& name) {
        return colorOf(part(face.find(name), "contentItem")->childItems().constFirst());
    };
    const auto edge = [&](const QString& name) {
        return colorOf(part(face.find(name), "background"), "edgeColor").alphaF();
    };
    const QString selected = QStringLiteral("leaf");
    const QString other = QStringLiteral("eye");
    EXPECT_NEAR(shade(selected), 0.14, 0.005);
    EXPECT_NEAR(edge(selected), 0.35, 0.005);
    EXPECT_EQ(symbolColor(selected), colorOf(face.item<TimeText>()));
    EXPECT_NEAR(shade(other), 0.05, 0.005);
    EXPECT_DOUBLE_EQ(edge(other), 0);
    EXPECT_EQ(symbolColor(other), secondary(face));
    EXPECT_EQ(face.find(other)->property("tooltip").toString(), other);
    // The pointer shades a tile, and doesn't make it look selected.
    face.hover(other);
    EXPECT_NEAR(shade(other), 0.09, 0.005);
    EXPECT_EQ(symbolColor(other), secondary(face));
}

TEST_F(TimerFaceLooks, ChipsAreAsHighAsTheirFontAndElevenMore) {
    for (const auto& [size, height] : {std::pair{11, 22}, {13, 24}}) {
        face.open(QStringLiteral("PresetChips { active: 0; fontSize: %1 }").arg(size).toUtf8());
        const QQuickItem* const chip =
            face.find(QStringLiteral("25 min focus, 5 min breaks, 15 min long break"));
        ASSERT_NE(chip, nullptr);
        EXPECT_DOUBLE_EQ(chip->height(), height);
        const QQuickItem* const words = part(chip, "contentItem");
        EXPECT_DOUBLE_EQ(words->x(), 10);
        EXPECT_NEAR(chip->width() - words->width(), 20, 1);
        EXPECT_EQ(words->property("font").value<QFont>().pixelSize(), size);
    }
}

TEST_F(TimerFaceLooks, ActiveChipIsStrong) {
    face.open("PresetChips { x: 100; y: 100; active: 2 } FaceCaption { words: 'x' } TimeText { color: "
              "Theme.primaryText }");
    const QString active = QStringLiteral("50 min focus, 10 min breaks, 30 min long break");
    const QString other = QStringLiteral("25 min focus, 5 min breaks, 15 min long break");
    const auto words = [&](const QString& name) { return part(face.find(name), "contentItem"); };
    EXPECT_NEAR(shade(active), 0.16, 0.005);
    EXPECT_EQ(words(active)->property("font").value<QFont>().weight(), QFont::DemiBold);
    EXPECT_EQ(colorOf(words(active)).rgba(), colorOf(face.item<TimeText>()).rgba());
    EXPECT_NEAR(shade(other), 0.06, 0.005);
    EXPECT_EQ(words(other)->property("font").value<QFont>().weight(), QFont::Medium);
    EXPECT_EQ(colorOf(words(other)).rgba(), secondary(face).rgba());
    EXPECT_EQ(face.find(other)->property("tooltip").toString(), other);
    face.hover(other);
    EXPECT_NEAR(shade(other), 0.09, 0.005);
    face.hover(active);
    EXPECT_NEAR(shade(active), 0.16, 0.005) << "the active one stays as it is";
}

TEST_F(TimerFaceLooks, DigitsStandALittleCloserThanTheFontSetsThem) {
    face.open("TimeText { time: '00:00'; size: 100 }");
    const auto* const time = face.item<TimeText>();
    const QFontMetricsF metrics(time->font());
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    EXPECT_EQ(time->font().weight(), QFont::DemiBold);
    EXPECT_DOUBLE_EQ(time->edges()[1], std::round(widest - 2));
}

} // namespace
} // namespace selvane
