#include "FaceWindow.h"
#include "Selvane/UI/Timer/CycleDashes.h"
#include "Selvane/UI/Timer/MinutesDraft.h"
#include "Selvane/UI/Timer/RingArc.h"
#include "Selvane/UI/Timer/TimeText.h"

#include <QAccessible>
#include <QImage>
#include <QInputMethodEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace selvane {
namespace {

class TimerFaceTest : public testing::Test {
protected:
    /// How often a motion is begun, until the process isn't held up before it is seen under way.
    static constexpr int mostAttempts = 20;

    void startTyping() {
        face.open();
        face.click(QStringLiteral("25:00 remaining"));
        ASSERT_EQ(face.focusedName(), QStringLiteral("Minutes"));
    }

    void key(Qt::Key key) { QTest::keyClick(&face.window(), key); }
    [[nodiscard]] int minutes() { return face.settings().focusMinutes(); }
    [[nodiscard]] bool isTyping() { return face.find(QStringLiteral("Minutes")) != nullptr; }

    void tabTo(const QString& name) {
        for (int step = 0; step < 4 && face.focusedName() != name; ++step)
            key(Qt::Key_Tab);
        ASSERT_EQ(face.focusedName(), name);
    }

    [[nodiscard]] bool isFocusSeen() {
        return face.window().activeFocusItem()->property("visualFocus").toBool();
    }

    void openGrid() {
        face.open();
        face.click(QStringLiteral("Focus icon"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return face.focusedName() == QStringLiteral("eye"); }));
    }

    [[nodiscard]] QAccessible::State stateOf(const QString& name) {
        QQuickItem* const item = face.find(name);
        return item ? QAccessible::queryAccessibleInterface(item)->state() : QAccessible::State();
    }

    [[nodiscard]] QAccessible::Role roleOf(const QString& name) {
        QQuickItem* const item = face.find(name);
        return item ? QAccessible::queryAccessibleInterface(item)->role() : QAccessible::NoRole;
    }

    [[nodiscard]] QString describe(const QString& name) {
        QQuickItem* const item = face.find(name);
        return item ? QAccessible::queryAccessibleInterface(item)->text(QAccessible::Description) : QString();
    }

    test::FaceWindow face;
};

TEST_F(TimerFaceTest, TypedMinutesAreCommittedByReturn) {
    startTyping();
    face.type(QStringLiteral("40"));
    key(Qt::Key_Return);
    EXPECT_EQ(minutes(), 40);
    EXPECT_FALSE(isTyping());
    EXPECT_NE(face.find(QStringLiteral("40:00 remaining")), nullptr);
}

TEST_F(TimerFaceTest, TypingBeginsWithTheWholeLengthSelected) {
    startTyping();
    QQuickItem* const field = face.window().activeFocusItem();
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("25"));
    EXPECT_EQ(field->property("selectedText").toString(), QStringLiteral("25"));
}

TEST_F(TimerFaceTest, EscapeCancelsAndGoesNoFurther) {
    startTyping();
    face.type(QStringLiteral("40"));
    key(Qt::Key_Escape);
    EXPECT_EQ(minutes(), 25);
    EXPECT_FALSE(isTyping());
    EXPECT_EQ(face.escapes(), 0);
    key(Qt::Key_Escape);
    EXPECT_EQ(face.escapes(), 1);
}

TEST_F(TimerFaceTest, KeyboardGoesBackToTheTimeThatOpenedTheField) {
    const QString names[] = {QStringLiteral("25:00 remaining"), QStringLiteral("40:00 remaining")};
    face.open();
    tabTo(names[0]);
    key(Qt::Key_Space);
    face.type(QStringLiteral("40"));
    key(Qt::Key_Return);
    EXPECT_EQ(face.focusedName(), names[1]);
    EXPECT_TRUE(isFocusSeen());
    key(Qt::Key_Return);
    ASSERT_EQ(face.focusedName(), QStringLiteral("Minutes"));
    key(Qt::Key_Escape);
    EXPECT_EQ(face.focusedName(), names[1]);
    key(Qt::Key_Tab);
    EXPECT_NE(face.focusedName(), names[1]) << "and goes on from there";
}

TEST_F(TimerFaceTest, KeyboardGoesBackToWhatHadItBeforeAClick) {
    for (const Qt::Key ending : {Qt::Key_Return, Qt::Key_Escape}) {
        startTyping();
        key(ending);
        EXPECT_EQ(face.focusedName(), QStringLiteral("elsewhere"));
    }
}

TEST_F(TimerFaceTest, KeyboardStaysWhereAClickTookIt) {
    face.open();
    tabTo(QStringLiteral("25:00 remaining"));
    key(Qt::Key_Space);
    face.click(QStringLiteral("elsewhere"));
    EXPECT_EQ(face.focusedName(), QStringLiteral("elsewhere"));
}

TEST_F(TimerFaceTest, AnotherPhaseEndsTheTypingAndChangesNoLength) {
    startTyping();
    face.type(QStringLiteral("3"));
    face.engine().select(Phase::shortBreak);
    EXPECT_FALSE(isTyping());
    key(Qt::Key_Return);
    EXPECT_EQ(minutes(), 25);
    EXPECT_EQ(face.settings().shortBreakMinutes(), 5);
    EXPECT_EQ(face.focusedName(), QStringLiteral("elsewhere"));
}

TEST_F(TimerFaceTest, RefusedCharactersLeaveTheCursorWhereItIs) {
    startTyping();
    QQuickItem* const field = face.window().activeFocusItem();
    face.type(QStringLiteral("123"));
    key(Qt::Key_Home);
    key(Qt::Key_Right);
    face.type(QStringLiteral("x"));
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("123"));
    EXPECT_EQ(field->property("cursorPosition").toInt(), 1);
    face.type(QStringLiteral("9"));
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("192"));
    EXPECT_EQ(field->property("cursorPosition").toInt(), 2);
}

TEST_F(TimerFaceTest, PlaceholderMakesRoomForWhatAnInputMethodComposes) {
    startTyping();
    QQuickItem* const field = face.window().activeFocusItem();
    const auto placeholder = [&] {
        const auto texts = field->childItems();
        return std::ranges::find_if(texts, [](const QQuickItem* item) {
                   return item->isVisible() && item->property("text").toString() == QStringLiteral("Minutes");
               }) != texts.end();
    };
    EXPECT_FALSE(placeholder());
    key(Qt::Key_Delete);
    EXPECT_TRUE(placeholder());
    QInputMethodEvent composing(QStringLiteral("2"), {});
    QCoreApplication::sendEvent(field, &composing);
    EXPECT_FALSE(placeholder());
}

TEST_F(TimerFaceTest, LosingTheKeyboardCommits) {
    startTyping();
    face.type(QStringLiteral("40"));
    face.click(QStringLiteral("elsewhere"));
    EXPECT_EQ(minutes(), 40);
    EXPECT_FALSE(isTyping());
}

TEST_F(TimerFaceTest, ZeroAndNothingKeepTheLength) {
    startTyping();
    face.type(QStringLiteral("0"));
    key(Qt::Key_Return);
    EXPECT_EQ(minutes(), 25);
    EXPECT_FALSE(isTyping());
    face.click(QStringLiteral("25:00 remaining"));
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_EQ(minutes(), 25);
    EXPECT_FALSE(isTyping());
}

TEST_F(TimerFaceTest, LettersDontComeIntoTheField) {
    startTyping();
    QQuickItem* const field = face.window().activeFocusItem();
    face.type(QStringLiteral("3x0"));
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("30"));
    face.type(QStringLiteral("z"));
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("30"));
}

TEST_F(TimerFaceTest, PasteLeavesTheFirstThreeDigits) {
    startTyping();
    face.paste(QStringLiteral("12a34"));
    EXPECT_EQ(face.window().activeFocusItem()->property("text").toString(), QStringLiteral("123"));
    key(Qt::Key_Return);
    EXPECT_EQ(minutes(), 120) << "the bounds are the settings'";
}

TEST_F(TimerFaceTest, TimeIsReachedByTabAndOpensWithSpaceAndReturn) {
    face.open();
    for (const Qt::Key opening : {Qt::Key_Space, Qt::Key_Return}) {
        for (int step = 0; step < 4 && face.focusedName() != QStringLiteral("25:00 remaining"); ++step)
            key(Qt::Key_Tab);
        ASSERT_EQ(face.focusedName(), QStringLiteral("25:00 remaining"));
        key(opening);
        EXPECT_EQ(face.focusedName(), QStringLiteral("Minutes"));
        key(Qt::Key_Escape);
    }
}

TEST_F(TimerFaceTest, ScreenReaderOpensTheField) {
    face.open();
    EXPECT_EQ(roleOf(QStringLiteral("25:00 remaining")), QAccessible::Button);
    EXPECT_EQ(describe(QStringLiteral("25:00 remaining")), QStringLiteral("Type a new length in minutes"));
    face.press(QStringLiteral("25:00 remaining"));
    EXPECT_EQ(roleOf(QStringLiteral("Minutes")), QAccessible::EditableText);
}

TEST_F(TimerFaceTest, RunningAndPausedTimesArePlainText) {
    face.engine().start();
    face.open();
    EXPECT_EQ(roleOf(QStringLiteral("25:00 remaining")), QAccessible::StaticText);
    face.click(QStringLiteral("25:00 remaining"));
    EXPECT_FALSE(isTyping());
    face.engine().pause();
    EXPECT_EQ(roleOf(QStringLiteral("25:00 remaining")), QAccessible::StaticText);
    face.engine().reset();
    EXPECT_EQ(roleOf(QStringLiteral("25:00 remaining")), QAccessible::Button);
}

TEST_F(TimerFaceTest, TimerThatStartsEndsTheTypingWithoutCommitting) {
    startTyping();
    face.type(QStringLiteral("40"));
    face.engine().start();
    EXPECT_FALSE(isTyping());
    EXPECT_EQ(minutes(), 25);
}

TEST_F(TimerFaceTest, NothingJumpsWhenTheTypingBegins) {
    face.open();
    const QRectF before = face.item<TimeText>()->mapRectToScene(face.item<TimeText>()->boundingRect());
    face.click(QStringLiteral("25:00 remaining"));
    QQuickItem* const field = face.window().activeFocusItem();
    const QRectF typed = field->parentItem()->mapRectToScene(field->parentItem()->boundingRect());
    EXPECT_NEAR(typed.center().x(), before.center().x(), 1);
    EXPECT_NEAR(typed.center().y(), before.center().y(), 0.5);
    EXPECT_DOUBLE_EQ(field->width(),
                     MinutesDraft::fieldWidth(40, field->property("contentWidth").toDouble()));
    const double narrow = field->width();
    face.type(QStringLiteral("120"));
    EXPECT_GT(field->width(), narrow) << "three digits are seen whole";
    EXPECT_DOUBLE_EQ(field->width(),
                     MinutesDraft::fieldWidth(40, field->property("contentWidth").toDouble()));
}

TEST_F(TimerFaceTest, IconIsChosenWithTheMouse) {
    openGrid();
    face.click(QStringLiteral("leaf"));
    EXPECT_EQ(face.settings().focusSymbol(), "leaf");
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("leaf")) == nullptr; }));
}

TEST_F(TimerFaceTest, IconIsChosenWithTheKeys) {
    openGrid();
    key(Qt::Key_Down);
    EXPECT_EQ(face.focusedName(), QStringLiteral("book"));
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_EQ(face.focusedName(), QStringLiteral("leaf"));
    key(Qt::Key_Up);
    EXPECT_EQ(face.focusedName(), QStringLiteral("No icon"));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_EQ(face.settings().focusSymbol(), "brain.head.profile");
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("leaf")) == nullptr; }));
}

TEST_F(TimerFaceTest, GridShowsTheKeyboardOnlyToWhoUsesIt) {
    openGrid();
    EXPECT_FALSE(isFocusSeen()) << "opened by a click";
    key(Qt::Key_Right);
    EXPECT_TRUE(isFocusSeen());
    key(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("leaf")) == nullptr; }));
    tabTo(QStringLiteral("Focus icon"));
    key(Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.focusedName() == QStringLiteral("eye"); }));
    EXPECT_TRUE(isFocusSeen());
}

TEST_F(TimerFaceTest, NoIconLeavesTheSettingEmpty) {
    openGrid();
    face.press(QStringLiteral("No icon"));
    EXPECT_EQ(face.settings().focusSymbol(), "");
}

TEST_F(TimerFaceTest, EscapeClosesTheGridAlone) {
    openGrid();
    key(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("leaf")) == nullptr; }));
    EXPECT_EQ(face.settings().focusSymbol(), "eye");
    EXPECT_EQ(face.escapes(), 0);
    key(Qt::Key_Escape);
    EXPECT_EQ(face.escapes(), 1);
}

TEST_F(TimerFaceTest, GridTellsWhatIsSelected) {
    openGrid();
    EXPECT_TRUE(stateOf(QStringLiteral("eye")).selected);
    EXPECT_FALSE(stateOf(QStringLiteral("leaf")).selected);
    EXPECT_EQ(roleOf(QStringLiteral("leaf")), QAccessible::Button);
}

TEST_F(TimerFaceTest, GlyphOfABreakChoosesTheBreaksIcon) {
    face.engine().select(Phase::shortBreak);
    face.open();
    EXPECT_EQ(describe(QStringLiteral("Break icon")), QStringLiteral("Choose a different icon"));
    face.press(QStringLiteral("Break icon"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("BREAK ICON")) != nullptr; }));
    face.press(QStringLiteral("moon"));
    EXPECT_EQ(face.settings().breakSymbol(), "moon");
    EXPECT_EQ(face.settings().focusSymbol(), "eye");
}

TEST_F(TimerFaceTest, ScreenReaderFindsEveryWordInEveryStyle) {
    face.open();
    for (const TimerStyle style : allCases<TimerStyle>) {
        face.settings().timerStyle.set(style);
        EXPECT_EQ(roleOf(QStringLiteral("Focus icon")), QAccessible::Button);
        EXPECT_EQ(roleOf(QStringLiteral("25:00 remaining")), QAccessible::Button);
        EXPECT_EQ(roleOf(QStringLiteral("Session 1 of 4")), QAccessible::StaticText);
        EXPECT_EQ(describe(QStringLiteral("Session 1 of 4")),
                  QStringLiteral("Session 1 of 4 before a long break"));
        EXPECT_EQ(roleOf(QStringLiteral("FOCUS")), QAccessible::StaticText);
    }
}

TEST_F(TimerFaceTest, StyleThatWasLeftGoesAway) {
    face.appearance.setReducesMotion(true);
    face.open();
    EXPECT_NE(face.item<RingArc>(), nullptr);
    face.settings().timerStyle.set(TimerStyle::bar);
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.item<RingArc>() == nullptr; }));
}

TEST_F(TimerFaceTest, DashPulsesOnlyInAFocusPhaseThatRuns) {
    face.open();
    EXPECT_FALSE(face.item<CycleDashes>()->isPulsing());
    face.engine().start();
    EXPECT_TRUE(face.item<CycleDashes>()->isPulsing());
    face.appearance.setReducesMotion(true);
    EXPECT_FALSE(face.item<CycleDashes>()->isPulsing());
    face.appearance.setReducesMotion(false);
    face.engine().pause();
    EXPECT_FALSE(face.item<CycleDashes>()->isPulsing());
    face.engine().reset();
    face.engine().select(Phase::shortBreak);
    face.engine().start();
    EXPECT_FALSE(face.item<CycleDashes>()->isPulsing());
}

TEST_F(TimerFaceTest, ArcOfAnOpenedWindowStandsAtThePresent) {
    face.engine().start();
    face.harness.pass(Seconds{750});
    face.open();
    EXPECT_DOUBLE_EQ(face.item<RingArc>()->shownProgress(), 0.5);
    face.window().hide();
    face.harness.pass(Seconds{375});
    face.window().show();
    EXPECT_DOUBLE_EQ(face.item<RingArc>()->shownProgress(), 0.75);
}

TEST_F(TimerFaceTest, NothingMovesUnderReducedMotion) {
    face.appearance.setReducesMotion(true);
    face.engine().start();
    face.harness.pass(Seconds{750});
    face.open();
    face.engine().reset();
    QCoreApplication::sendPostedEvents();
    (void)face.window().grabWindow();
    EXPECT_DOUBLE_EQ(face.item<RingArc>()->shownProgress(), 0);
    EXPECT_DOUBLE_EQ(face.item<TimeText>()->rollPosition(), 1);
}

TEST_F(TimerFaceTest, ResetMovesTheArcAndTheDigits) {
    bool isRolling = false;
    for (int attempt = 0; attempt < mostAttempts && !isRolling; ++attempt) {
        face.engine().start();
        face.harness.pass(Seconds{750});
        face.open();
        (void)face.window().grabWindow();
        face.engine().reset();
        QCoreApplication::sendPostedEvents();
        (void)face.window().grabWindow();
        isRolling = face.item<TimeText>()->rollPosition() < 0.9;
        EXPECT_GT(face.item<RingArc>()->shownProgress(), 0.1);
    }
    EXPECT_TRUE(isRolling);
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.item<RingArc>()->shownProgress() == 0.0; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.item<TimeText>()->rollPosition() == 1.0; }));
}

TEST_F(TimerFaceTest, TickDuringATickLeavesNoDigitHalfway) {
    face.open("TimeText { time: '12:00'; isRunning: true; color: 'black' }");
    auto* const text = face.item<TimeText>();
    const auto show = [&](const char* time) {
        text->setTime(QString::fromLatin1(time));
        QCoreApplication::sendPostedEvents();
        return face.window().grabWindow();
    };
    const auto isRolling = [&] { return text->rollPosition() < 1; };
    text->setReducesMotion(true);
    const QImage painted = show("11:58");
    ASSERT_NE(show("12:00"), painted);
    text->setReducesMotion(false);

    bool overlaps = false;
    for (int attempt = 0; attempt < mostAttempts && !overlaps; ++attempt) {
        (void)show("12:00");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !isRolling(); }));
        (void)show("11:59");
        overlaps = isRolling();
        (void)show("11:58");
        overlaps = overlaps && isRolling();
    }
    ASSERT_TRUE(overlaps) << "the second one comes during the first and is still under way";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isRolling() && face.window().grabWindow() == painted; }))
        << "as if painted at once";
}

TEST_F(TimerFaceTest, EveryDigitHasTheSameWidth) {
    face.open();
    TimeText* const time = face.item<TimeText>();
    for (const char* text : {"11:11", "20:48", "1:02:05"}) {
        time->setTime(QString::fromUtf8(text));
        const auto& edges = time->edges();
        ASSERT_EQ(edges.size(), time->time().size() + 1U);
        for (std::size_t index = 0; index + 1 < edges.size(); ++index) {
            if (text[index] == ':')
                continue;
            EXPECT_DOUBLE_EQ(edges[index + 1] - edges[index], edges[1] - edges[0]) << text << " " << index;
        }
    }
}

TEST_F(TimerFaceTest, HoursFitIntoTheRing) {
    face.settings().focusMinutes.set(120);
    face.open();
    const TimeText* const time = face.item<TimeText>();
    EXPECT_EQ(time->time(), QStringLiteral("2:00:00"));
    EXPECT_LE(time->edges().back(), 126);
    EXPECT_LT(time->font().pixelSize(), 40);
    EXPECT_DOUBLE_EQ(time->size(), 40) << "only what is drawn is smaller";
}

TEST_F(TimerFaceTest, HoursAreFullSizeWhereThereIsRoom) {
    for (const auto& [style, size] : {std::pair{TimerStyle::bar, 52}, {TimerStyle::minimal, 60}}) {
        face.settings().focusMinutes.set(120);
        face.settings().timerStyle.set(style);
        face.open();
        const TimeText* const time = face.item<TimeText>();
        EXPECT_EQ(time->time(), QStringLiteral("2:00:00"));
        EXPECT_EQ(time->font().pixelSize(), size);
        EXPECT_LE(time->edges().back(), 300) << "less than the panel has";
    }
}

TEST_F(TimerFaceTest, PauseChangesTheWordSoftlyAndAPhaseAtOnce) {
    face.open();
    QQuickItem* const caption = face.itemOf("FaceCaption");
    ASSERT_NE(caption, nullptr);
    const auto word = [&] { return caption->property("text").toString(); };
    face.engine().select(Phase::shortBreak);
    EXPECT_EQ(word(), QStringLiteral("SHORT BREAK"));
    EXPECT_DOUBLE_EQ(caption->opacity(), 1);
    face.engine().start();
    face.engine().pause();
    EXPECT_EQ(word(), QStringLiteral("SHORT BREAK")) << "it goes first";
    EXPECT_TRUE(QTest::qWaitFor([&] { return word() == QStringLiteral("PAUSED"); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return caption->opacity() == 1.0; }));
}

TEST_F(TimerFaceTest, PhaseThatComesDuringTheFadeIsThereAtOnce) {
    QQuickItem* caption = nullptr;
    const auto word = [&] { return caption->property("text").toString(); };
    bool fades = false;
    for (int attempt = 0; attempt < mostAttempts && !fades; ++attempt) {
        face.engine().reset();
        face.open();
        caption = face.itemOf("FaceCaption");
        ASSERT_NE(caption, nullptr);
        face.engine().start();
        face.engine().pause();
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return caption->opacity() < 1 || word() == QStringLiteral("PAUSED"); }));
        fades = caption->opacity() < 1;
    }
    ASSERT_TRUE(fades);
    face.engine().reset();
    face.engine().select(Phase::longBreak);
    EXPECT_EQ(word(), QStringLiteral("LONG BREAK"));
    EXPECT_DOUBLE_EQ(caption->opacity(), 1);
}

TEST_F(TimerFaceTest, PresetChipsTellAndChoose) {
    face.open("PresetChips { active: 2; onSelect: preset => root.chosen = preset }");
    const QString active = QStringLiteral("50 min focus, 10 min breaks, 30 min long break");
    const QString other = QStringLiteral("25 min focus, 5 min breaks, 15 min long break");
    EXPECT_TRUE(stateOf(active).selected);
    EXPECT_FALSE(stateOf(other).selected);
    face.press(other);
    EXPECT_EQ(face.chosen(), QStringLiteral("0"));
}

TEST_F(TimerFaceTest, SymbolPickerButtonShowsAndChooses) {
    face.open("SymbolPickerButton { x: 100; accessibleName: 'Focus'; selection: '';"
              "    onSelected: name => root.chosen = name }");
    EXPECT_NE(face.find(QStringLiteral("Focus")), nullptr);
    face.click(QStringLiteral("Focus"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.focusedName() == QStringLiteral("No icon"); }));
    face.press(QStringLiteral("heart"));
    EXPECT_EQ(face.chosen(), QStringLiteral("heart"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return face.find(QStringLiteral("heart")) == nullptr; }));
}

} // namespace
} // namespace selvane
