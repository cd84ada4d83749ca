#include "ContrastRatio.h"
#include "PopoverFixture.h"

#include <QImage>

namespace selvane {
namespace {

/// The popover where strong contrast is wanted, light and dark: what is drawn without words.
class PopoverContrast : public test::PopoverFixture, public testing::WithParamInterface<bool> {
protected:
    /// The least that a mark that says something may have, and what others fill.
    static constexpr double ofMark = 3;
    static constexpr double ofTrack = 1.6;

    PopoverContrast() {
        appearance.setDark(GetParam());
        appearance.setHighContrast(true);
        settle();
    }

    /// The contrast of a place in an item with a place beside it.
    [[nodiscard]] double contrast(const QQuickItem* item, QPointF place, QPointF beside) const {
        const QImage picture = window->grabWindow();
        const auto colorAt = [&](QPointF point) {
            return picture.pixelColor(item->mapToScene(point).toPoint());
        };
        return test::contrast(colorAt(place), colorAt(beside));
    }
};

TEST_P(PopoverContrast, DashesToComeAndTheirOrderAreSeen) {
    const QQuickItem* const dashes = part("CycleDashes");
    const double last = dashes->width() - 4;
    EXPECT_GE(contrast(dashes, {last, 1}, {last + 8, 1}), ofMark);
    EXPECT_GE(contrast(dashes, {3, 1}, {last, 1}), 1.6) << "the one under way stands out from those to come";
}

TEST_P(PopoverContrast, WayOfTheSliderIsSeen) {
    harness.answers.isMusicPlaying = true;
    model().music().changed.emit();
    settle();
    const QQuickItem* const slider = part("MiniSlider");
    EXPECT_GE(contrast(slider, {slider->width() - 6, 10}, {slider->width() - 6, 4}), ofMark);
}

TEST_P(PopoverContrast, EdgesOfIconsThatAreNotChosenAreSeen) {
    press(QStringLiteral("Focus icon"));
    const QQuickItem* const tile = control(QStringLiteral("leaf"));
    EXPECT_GE(contrast(tile, {16, 0}, {16, -3}), ofMark);
}

TEST_P(PopoverContrast, TracksOfTheTimerAreSeen) {
    EXPECT_GE(contrast(part("RingBezel"), {92, 172}, {92, 160}), ofTrack);
    model().settings().timerStyle.set(TimerStyle::bar);
    settle();
    const QQuickItem* const bar = part("BarFill");
    EXPECT_GE(contrast(bar, {bar->width() / 2, bar->height() / 2}, {bar->width() / 2, -3}), ofTrack);
}

TEST_P(PopoverContrast, TrackOfTheGoalAndDaysWithoutFocusAreSeen) {
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_GE(contrast(part("GoalRing"), {20, 38}, {20, 43}), ofTrack);
    // The oldest day of all.
    EXPECT_GE(contrast(part("HeatmapView"), {38, 24}, {46, 24}), ofTrack);
}

INSTANTIATE_TEST_SUITE_P(Appearances, PopoverContrast, testing::Bool(),
                         [](const auto& row) { return row.param ? "Dark" : "Light"; });

} // namespace
} // namespace selvane
