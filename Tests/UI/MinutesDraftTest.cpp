#include "Selvane/UI/Timer/MinutesDraft.h"

#include "Selvane/UI/Timer/MinutesValidator.h"
#include "Support/ModelHarness.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace selvane {
namespace {

struct CleanRow {
    const char* name;
    const char* text;
    const char* kept;
};

class MinutesDraftKeeps : public testing::TestWithParam<CleanRow> {};

TEST_P(MinutesDraftKeeps, TheFirstThreeNumbers) {
    EXPECT_EQ(MinutesDraft::cleaned(QString::fromUtf8(GetParam().text)).toStdString(), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(MinutesDraft, MinutesDraftKeeps,
                         testing::Values(CleanRow{"nothing", "", ""}, CleanRow{"two", "25", "25"},
                                         CleanRow{"three", "120", "120"}, CleanRow{"four", "1200", "120"},
                                         CleanRow{"letterBetween", "12x34", "123"},
                                         CleanRow{"lettersAlone", "abc", ""}, CleanRow{"sign", "-5", "5"},
                                         CleanRow{"fraction", "2.5", "25"}, CleanRow{"spaces", " 4 5 ", "45"},
                                         CleanRow{"arabicDigits", "٢٥ min", "٢٥"},
                                         CleanRow{"half", "1½", "1½"},
                                         CleanRow{"wide", "１２３４", "１２３"}),
                         [](const auto& test) { return std::string(test.param.name); });

struct ParseRow {
    const char* name;
    const char* text;
    std::optional<int> minutes;
};

class MinutesDraftParses : public testing::TestWithParam<ParseRow> {};

TEST_P(MinutesDraftParses, DecimalNumbersAboveZero) {
    EXPECT_EQ(MinutesDraft::minutes(QString::fromUtf8(GetParam().text)), GetParam().minutes);
}

INSTANTIATE_TEST_SUITE_P(
    MinutesDraft, MinutesDraftParses,
    testing::Values(ParseRow{"plain", "25", 25}, ParseRow{"one", "1", 1}, ParseRow{"most", "999", 999},
                    ParseRow{"leadingZero", "007", 7}, ParseRow{"nothing", "", std::nullopt},
                    ParseRow{"zero", "0", std::nullopt}, ParseRow{"zeros", "000", std::nullopt},
                    ParseRow{"half", "1½", std::nullopt}, ParseRow{"arabicDigits", "٢٥", std::nullopt},
                    ParseRow{"wide", "１２", std::nullopt}),
    [](const auto& test) { return std::string(test.param.name); });

class MinutesDraftTest : public testing::Test {
protected:
    MinutesDraftTest() : face(harness.launch()) { draft.setFace(&face); }

    [[nodiscard]] int minutes() { return harness.model().settings().focusMinutes(); }
    void type(const char* text) {
        draft.startEditing(1500);
        draft.setText(QString::fromUtf8(text));
    }

    test::ModelHarness harness;
    TimerFaceModel face;
    MinutesDraft draft;
};

TEST_F(MinutesDraftTest, BeginsWithWholeMinutesAndRoundsHalvesUp) {
    for (const auto& [seconds, text] :
         {std::pair{1500.0, "25"}, {1529.9, "25"}, {1530.0, "26"}, {29.0, "0"}, {30.0, "1"}, {90.0, "2"}}) {
        draft.startEditing(seconds);
        EXPECT_EQ(draft.text().toStdString(), text) << seconds;
        draft.cancel();
    }
}

TEST_F(MinutesDraftTest, SavingCommitsTheNumberOnce) {
    type("40");
    draft.save();
    EXPECT_FALSE(draft.isEditing());
    EXPECT_EQ(minutes(), 40);
    harness.model().settings().focusMinutes.set(25);
    draft.save();
    draft.focusChanged(false);
    EXPECT_EQ(minutes(), 25);
}

TEST_F(MinutesDraftTest, CancellingCommitsNothing) {
    type("40");
    draft.cancel();
    EXPECT_FALSE(draft.isEditing());
    draft.focusChanged(false);
    EXPECT_EQ(minutes(), 25);
}

TEST_F(MinutesDraftTest, LosingTheKeyboardSavesAndGettingItDoesNot) {
    type("40");
    draft.focusChanged(true);
    EXPECT_TRUE(draft.isEditing());
    EXPECT_EQ(minutes(), 25);
    draft.focusChanged(false);
    EXPECT_FALSE(draft.isEditing());
    EXPECT_EQ(minutes(), 40);
}

TEST_F(MinutesDraftTest, UserWhoTurnsToSomethingElseSaves) {
    type("40");
    face.endTyping();
    EXPECT_FALSE(draft.isEditing());
    EXPECT_EQ(minutes(), 40);
    harness.model().settings().focusMinutes.set(25);
    face.endTyping();
    EXPECT_EQ(minutes(), 25) << "nobody types";
}

TEST_F(MinutesDraftTest, WithoutAFaceNothingIsTyped) {
    type("40");
    draft.setFace(nullptr);
    EXPECT_FALSE(draft.isEditing());
    face.endTyping();
    EXPECT_EQ(minutes(), 25);
    draft.startEditing(1500);
    EXPECT_FALSE(draft.isEditing());
}

TEST_F(MinutesDraftTest, NoNumberEndsTheTypingAndCommitsNothing) {
    for (const char* text : {"", "0", "٢٥"}) {
        type(text);
        draft.save();
        EXPECT_FALSE(draft.isEditing()) << text;
        EXPECT_EQ(minutes(), 25) << text;
    }
}

TEST_F(MinutesDraftTest, ViewHearsThatLettersWereLeftOut) {
    draft.startEditing(1500);
    const QSignalSpy text(&draft, &MinutesDraft::textChanged);
    draft.setText(QStringLiteral("25x"));
    EXPECT_EQ(text.count(), 1) << "though the draft is what it was";
    EXPECT_EQ(draft.text(), QStringLiteral("25"));
    draft.setText(QStringLiteral("25"));
    EXPECT_EQ(text.count(), 1);
}

TEST_F(MinutesDraftTest, TimerThatStartsCancelsTheTyping) {
    type("40");
    harness.model().engine().start();
    EXPECT_FALSE(draft.isEditing());
    EXPECT_EQ(minutes(), 25);
    draft.startEditing(1500);
    EXPECT_FALSE(draft.isEditing());
}

TEST_F(MinutesDraftTest, AnotherPhaseCancelsTheTyping) {
    type("3");
    harness.model().engine().select(Phase::shortBreak);
    EXPECT_FALSE(draft.isEditing());
    EXPECT_EQ(minutes(), 25);
    EXPECT_EQ(harness.model().settings().shortBreakMinutes(), 5);
}

TEST_F(MinutesDraftTest, TypingThatEndsByAKeyFreesTheKeyboard) {
    const QSignalSpy freed(&draft, &MinutesDraft::keyboardFreed);
    for (const auto end : {&MinutesDraft::save, &MinutesDraft::cancel}) {
        draft.startEditing(1500);
        draft.focusChanged(true);
        (draft.*end)();
        draft.focusChanged(false);
    }
    EXPECT_EQ(freed.count(), 2);
}

TEST_F(MinutesDraftTest, KeyboardThatWentElsewhereIsNotFreed) {
    const QSignalSpy freed(&draft, &MinutesDraft::keyboardFreed);
    draft.startEditing(1500);
    draft.focusChanged(true);
    draft.focusChanged(false);
    EXPECT_FALSE(draft.isEditing());
    draft.startEditing(1500);
    draft.cancel();
    EXPECT_EQ(freed.count(), 0);
}

TEST(MinutesField, IsFiveQuartersOfItsSizeWideOrWiderThanItsText) {
    EXPECT_DOUBLE_EQ(MinutesDraft::fieldWidth(40, 30.2), 50);
    EXPECT_DOUBLE_EQ(MinutesDraft::fieldWidth(60, 0), 75);
    EXPECT_DOUBLE_EQ(MinutesDraft::fieldWidth(40, 70.2), 73);
}

struct ValidatedRow {
    const char* text;
    int cursor;
    const char* kept;
    int cursorAfter;
};

TEST(MinutesValidator, CursorStaysWhereItWasAmongWhatIsKept) {
    const MinutesValidator validator;
    for (const auto& [text, cursor, kept, cursorAfter] :
         {ValidatedRow{"1x23", 2, "123", 1}, ValidatedRow{"9123", 1, "912", 1},
          ValidatedRow{"12a34", 5, "123", 3}, ValidatedRow{"25", 1, "25", 1}, ValidatedRow{"", 0, "", 0},
          ValidatedRow{"x", 1, "", 0}}) {
        QString input = QString::fromUtf8(text);
        int position = cursor;
        EXPECT_EQ(validator.validate(input, position), QValidator::Acceptable) << text;
        EXPECT_EQ(input.toStdString(), kept);
        EXPECT_EQ(position, cursorAfter) << text;
    }
}

} // namespace
} // namespace selvane
