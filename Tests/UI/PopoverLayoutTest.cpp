#include "PopoverFixture.h"
#include "Selvane/UI/Popover/HeadStart.h"

#include <QColor>
#include <QFont>

#include <gmock/gmock.h>

#include <functional>
#include <set>
#include <span>

namespace selvane {
namespace {

using testing::Contains;

constexpr double width = 348;
constexpr double margin = 16;

class PopoverLayoutTest : public test::PopoverFixture {
protected:
    /// Half a pixel is for words and rows of an odd width.
    void expectCentred(const char* type) const {
        EXPECT_NEAR(frame(part(type)).center().x(), width / 2, 0.5) << type;
    }

    void expectFromMarginToMargin(const char* type) const {
        EXPECT_EQ(frame(part(type)).left(), margin) << type;
        EXPECT_EQ(frame(part(type)).right(), width - margin) << type;
    }

    /// The room below the tabs.
    [[nodiscard]] const QQuickItem* lowerFrame() const { return part("TabPage")->parentItem(); }

    /// The only text in a part.
    [[nodiscard]] static const QQuickItem* textIn(const QQuickItem* item) {
        for (const QQuickItem* const child : item->childItems()) {
            if (child->inherits("QQuickText"))
                return child;
            if (const QQuickItem* const found = textIn(child))
                return found;
        }
        return nullptr;
    }

    [[nodiscard]] double volumeOpacity() const {
        return part("MiniSlider")->property("background").value<QQuickItem*>()->opacity();
    }

    void setPlaying(bool plays) {
        harness.answers.isMusicPlaying = plays;
        model().music().changed.emit();
        settle();
    }
};

TEST_F(PopoverLayoutTest, RowsStandOneBelowTheOtherInEveryStyle) {
    for (const TimerStyle style : allCases<TimerStyle>) {
        SCOPED_TRACE(rawValue(style));
        model().settings().timerStyle.set(style);
        settle();
        EXPECT_EQ(frame(part("HeaderView")).top(), 20);
        EXPECT_EQ(frame(part("SessionStatusRow")).top(), frame(part("HeaderView")).bottom() + 12);
        EXPECT_EQ(frame(part("TimerSection")).top(), frame(part("SessionStatusRow")).bottom() + 12);
        EXPECT_EQ(frame(part("ControlsView")).top(), frame(part("TimerSection")).bottom() + 20);
        EXPECT_EQ(frame(part("MusicRow")).top(), frame(part("ControlsView")).bottom() + 20);
        EXPECT_EQ(frame(part("TabSwitcher")).top(), frame(part("MusicRow")).bottom() + 12);
        EXPECT_EQ(frame(lowerFrame()).top(), frame(part("TabSwitcher")).bottom());
        EXPECT_EQ(frame(lowerFrame()).height(), 236);
        EXPECT_EQ(frame(lowerFrame()).bottom(), part("PopoverView")->height());
    }
}

TEST_F(PopoverLayoutTest, RowsKeepTheMarginsOrStandInTheMiddle) {
    EXPECT_EQ(part("PopoverView")->width(), width);
    for (const char* const type : {"HeaderView", "MusicRow", "TabSwitcher"})
        expectFromMarginToMargin(type);
    for (const char* const type : {"SessionStatusRow", "TimerSection", "TimerFace", "CurrentTaskPicker",
                                   "SessionNote", "ControlsView"})
        expectCentred(type);
    EXPECT_EQ(frame(lowerFrame()).left(), 0);
    EXPECT_EQ(frame(lowerFrame()).width(), width);
}

TEST_F(PopoverLayoutTest, TimerIsAColumnOfItsFaceTheTaskAndTheNote) {
    const QRectF face = frame(part("TimerFace"));
    const QRectF picker = frame(part("CurrentTaskPicker"));
    const QRectF note = frame(part("SessionNote"));
    EXPECT_EQ(face.top(), frame(part("TimerSection")).top());
    EXPECT_GE(picker.top(), face.bottom());
    EXPECT_GE(note.top(), picker.bottom());
    EXPECT_EQ(note.bottom(), frame(part("TimerSection")).bottom());
}

TEST_F(PopoverLayoutTest, HeaderHoldsThePhaseAtOneEndAndTheRestAtTheOther) {
    EXPECT_EQ(frame(part("PhaseMenu")).left(), margin);
    EXPECT_LT(frame(part("PhaseMenu")).right(), frame(part("StreakBadge")).left());
    EXPECT_LT(frame(part("StreakBadge")).right(), frame(part("MoreMenu")).left());
}

TEST_F(PopoverLayoutTest, EachTabFillsTheLowerFrame) {
    EXPECT_EQ(frame(part("TaskListView")), frame(lowerFrame()));
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(frame(part("ProgressTab")), frame(lowerFrame()));
}

TEST_F(PopoverLayoutTest, MusicRowIs38HighAndPadded) {
    const QQuickItem* const row = part("MusicRow");
    EXPECT_EQ(row->height(), 38);
    EXPECT_EQ(frame(part("PlayingSymbol"), row).left(), 14);
    EXPECT_EQ(frame(control(QStringLiteral("Turn sound on")), row).right(), row->width() - 6);
    EXPECT_EQ(part("MiniSlider")->width(), 72);
}

TEST_F(PopoverLayoutTest, TabsAreAtLeast24High) {
    EXPECT_GE(part("PillTabStrip")->height(), 24);
}

TEST_F(PopoverLayoutTest, LongWordsEndWhereTheMarginsAre) {
    const std::string longName(200, 'm');
    model().addTask(longName);
    model().setCurrentTaskID(model().tasks().items.at(0).id);
    showDrift(longName.c_str());
    for (const char* const type : {"CurrentTaskPicker", "SessionNote"}) {
        EXPECT_EQ(frame(part(type)).width(), 316) << type;
        const QQuickItem* const words = textIn(part(type));
        EXPECT_GE(frame(words).left(), margin) << type;
        EXPECT_LE(frame(words).right(), width - margin) << type;
        EXPECT_TRUE(words->property("truncated").toBool()) << type;
    }
}

TEST_F(PopoverLayoutTest, StyleChosenWhileItIsOpenGivesTheWindowItsHeight) {
    // Not the one that it was shown with.
    for (const TimerStyle style : {TimerStyle::minimal, TimerStyle::bar}) {
        SCOPED_TRACE(rawValue(style));
        const QSize before = window->size();
        model().settings().timerStyle.set(style);
        settle();
        EXPECT_NE(window->size(), before);
        EXPECT_EQ(window->height(), part("PopoverView")->height());
        EXPECT_EQ(window->minimumSize(), window->size());
        EXPECT_EQ(window->maximumSize(), window->size());
        EXPECT_TRUE(window->mask().boundingRect() == QRect({}, window->size())) << "its corners are cut off";
    }
}

TEST_F(PopoverLayoutTest, DotTellsOfAnUpdateAndOnlyThen) {
    const QQuickItem* dot = nullptr;
    for (const QQuickItem* const child : part("MoreMenu")->childItems()) {
        if (child->inherits("QQuickRectangle"))
            dot = child;
    }
    ASSERT_NE(dot, nullptr);
    EXPECT_FALSE(dot->isVisible());
    harness.answers.updateAvailable = true;
    model().updater().changed.emit();
    EXPECT_TRUE(dot->isVisible());
    EXPECT_EQ(dot->size(), QSizeF(6, 6));
    const QRectF symbol = frame(parts(part("MoreMenu"), "Symbol").front());
    EXPECT_EQ(frame(dot).topRight(), symbol.topRight() + QPointF(3, -2)) << "beyond the symbol's corner";
}

TEST_F(PopoverLayoutTest, UpdateEntryIsOutOfUseWhileNoneCanBeLookedFor) {
    press(QStringLiteral("More"));
    EXPECT_FALSE(control(QStringLiteral("Check for Updates…"))->isEnabled());
    harness.answers.canCheckForUpdates = true;
    model().updater().changed.emit();
    EXPECT_TRUE(control(QStringLiteral("Check for Updates…"))->isEnabled());
}

TEST_F(PopoverLayoutTest, PhasesAreOutOfUseUnlessTheTimerIsIdle) {
    const auto expectEnabled = [this](bool enabled) {
        for (const char* const phase : {"Focus", "Short Break", "Long Break"})
            EXPECT_EQ(control(QString::fromLatin1(phase))->isEnabled(), enabled) << phase;
    };
    press(QStringLiteral("Phase: Focus"));
    expectEnabled(true);
    engine().start();
    settle();
    expectEnabled(false);
    engine().pause();
    settle();
    expectEnabled(false);
}

TEST_F(PopoverLayoutTest, CheckmarkStandsAtTheCurrentTaskAlone) {
    model().addTask("Write");
    model().addTask("Read");
    model().setCurrentTaskID(model().tasks().items.at(1).id);
    press(QStringLiteral("Read"));
    int rows = 0;
    for (const QQuickItem* const row : parts(window->contentItem(), "PopupMenuItem")) {
        const auto* const mark = row->property("indicator").value<QQuickItem*>();
        EXPECT_EQ(mark->isVisible(), row->property("text") == QStringLiteral("Read")) << rows;
        ++rows;
    }
    EXPECT_EQ(rows, 3) << "both, and No task";
}

TEST_F(PopoverLayoutTest, PickerIsFainterWithoutATask) {
    const QQuickItem* const words = textIn(part("CurrentTaskPicker"));
    EXPECT_NEAR(words->property("color").value<QColor>().alphaF(), 0.6, 0.001);
    model().addTask("Write");
    model().setCurrentTaskID(model().tasks().items.at(0).id);
    EXPECT_NEAR(words->property("color").value<QColor>().alphaF(), 0.85, 0.001);
}

TEST_F(PopoverLayoutTest, StreakIsFaintUntilTodaysGoalIsMet) {
    const QColor atRisk = part("StreakBadge")->property("ink").value<QColor>();
    model().settings().dailyGoalMinutes.set(10);
    engine().start();
    harness.pass(Seconds{601});
    engine().reset();
    settle();
    const QColor met = part("StreakBadge")->property("ink").value<QColor>();
    EXPECT_GT(met.alphaF(), atRisk.alphaF());
    EXPECT_EQ(met.rgba(), textIn(part("MusicMenu"))->property("color").value<QColor>().rgba())
        << "as all that matters";
}

TEST_F(PopoverLayoutTest, VolumeIsSeenWhilePlayingOrUnderThePointer) {
    EXPECT_EQ(volumeOpacity(), 0);
    setPlaying(true);
    EXPECT_TRUE(QTest::qWaitFor([this] { return volumeOpacity() == 1; }));
    setPlaying(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return volumeOpacity() == 0; }));
    const QQuickItem* const row = part("MusicRow");
    QTest::mouseMove(window, row->mapToScene({200, 19}).toPoint());
    EXPECT_TRUE(QTest::qWaitFor([this] { return volumeOpacity() == 1; })) << "under the pointer";
    QTest::mouseMove(window, row->mapToScene({200, -40}).toPoint());
    EXPECT_TRUE(QTest::qWaitFor([this] { return volumeOpacity() == 0; }));
}

TEST_F(PopoverLayoutTest, VolumeIsSeenWhileItHasTheKeyboard) {
    part("MiniSlider")->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(QTest::qWaitFor([this] { return volumeOpacity() == 1; }));
}

TEST_F(PopoverLayoutTest, NoteWithoutWordsIsNotAnnounced) {
    const QQuickItem* const note = part("SessionNote");
    const std::function<bool(const QAccessibleInterface*)> holds = [&](const QAccessibleInterface* item) {
        if (item->object() == note)
            return true;
        for (int index = 0; index < item->childCount(); ++index) {
            if (holds(item->child(index)))
                return true;
        }
        return false;
    };
    const auto isAnnounced = [&] { return holds(QAccessible::queryAccessibleInterface(window)); };
    EXPECT_FALSE(isAnnounced());
    showDrift("News");
    EXPECT_TRUE(isAnnounced());
    EXPECT_EQ(accessible(QStringLiteral("News is on your distractions list"))->role(),
              QAccessible::StaticText);
}

TEST_F(PopoverLayoutTest, FontsOfTheHeadStartAreThoseThatAreRead) {
    std::set<HeadStart::UsedFont> read;
    const QQuickItem* const page = part("TaskListView");
    for (const QQuickItem* const item : window->contentItem()->findChildren<QQuickItem*>()) {
        // It comes after the first frame.
        if (page->isAncestorOf(item))
            continue;
        const QVariant font = item->property("font");
        if (item->isVisible() && font.typeId() == QMetaType::QFont &&
            !item->property("text").toString().isEmpty())
            read.insert({font.value<QFont>().weight(), font.value<QFont>().pixelSize()});
    }
    const std::span<const HeadStart::UsedFont> known = HeadStart::usedFonts();
    for (const auto& [weight, size] : read)
        EXPECT_THAT(known, Contains(HeadStart::UsedFont{weight, size})) << weight << ' ' << size;
    for (const auto& [weight, size] : known)
        EXPECT_THAT(read, Contains(HeadStart::UsedFont{weight, size})) << weight << ' ' << size;
    const QFont note = textIn(part("SessionNote"))->property("font").value<QFont>();
    EXPECT_EQ(note.weight(), HeadStart::noteFont().weight);
    EXPECT_EQ(note.pixelSize(), HeadStart::noteFont().size);
}

TEST_F(PopoverLayoutTest, DigitsOfTheHeadStartAreThoseOfTheFace) {
    for (const TimerStyle style : allCases<TimerStyle>) {
        SCOPED_TRACE(rawValue(style));
        model().settings().timerStyle.set(style);
        settle();
        const QFont digits = part("TimeText")->property("font").value<QFont>();
        EXPECT_EQ(digits.weight(), HeadStart::timeFont(style).weight);
        EXPECT_EQ(digits.pixelSize(), HeadStart::timeFont(style).size);
    }
}

} // namespace
} // namespace selvane
