#include "Selvane/UI/Timer/SymbolChoices.h"

#include "Selvane/UI/Symbols/Symbols.h"
#include "Selvane/UI/Timer/PresetChoices.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(SymbolChoices, OfferNoneFirstAndThenTheEighteenInOrder) {
    const SymbolChoices choices;
    EXPECT_EQ(choices.names().join(u' ').toStdString(),
              " eye brain.head.profile flame bolt target leaf book pencil laptopcomputer headphones "
              "paintbrush.pointed sparkles sun.max moon heart cup.and.saucer figure.walk music.note");
    EXPECT_EQ(choices.columns(), 6);
}

TEST(SymbolChoices, EachHasADrawing) {
    const SymbolChoices choices;
    for (const QString& name : choices.names())
        EXPECT_TRUE(Symbols::contains(choices.symbol(name).toStdString())) << name.toStdString();
}

TEST(SymbolChoices, NoneHasAPictureAndAName) {
    const SymbolChoices choices;
    EXPECT_EQ(choices.symbol(QString()), QStringLiteral("circle.slash"));
    EXPECT_EQ(choices.label(QString()), QStringLiteral("No icon"));
    EXPECT_EQ(choices.symbol(QStringLiteral("moon")), QStringLiteral("moon"));
    EXPECT_EQ(choices.label(QStringLiteral("moon")), QStringLiteral("moon"));
    EXPECT_EQ(choices.noneWord(), QStringLiteral("None"));
}

TEST(SymbolChoices, FindsTheTileOfAName) {
    const SymbolChoices choices;
    EXPECT_EQ(choices.indexOf(QString()), 0);
    EXPECT_EQ(choices.indexOf(QStringLiteral("eye")), 1);
    EXPECT_EQ(choices.indexOf(QStringLiteral("music.note")), 18);
    EXPECT_EQ(choices.indexOf(QStringLiteral("unheard.of")), 0);
}

TEST(SymbolChoices, ArrowsGoToNeighboursWithinTheGrid) {
    const SymbolChoices choices;
    EXPECT_EQ(choices.neighbour(0, 1, 0), 1);
    EXPECT_EQ(choices.neighbour(0, 0, 1), 6);
    EXPECT_EQ(choices.neighbour(7, 0, -1), 1);
    EXPECT_EQ(choices.neighbour(7, -1, 0), 6);
    EXPECT_EQ(choices.neighbour(12, 0, 1), 18);
}

TEST(SymbolChoices, ArrowsStayAtTheEdges) {
    const SymbolChoices choices;
    EXPECT_EQ(choices.neighbour(0, -1, 0), 0);
    EXPECT_EQ(choices.neighbour(0, 0, -1), 0);
    EXPECT_EQ(choices.neighbour(5, 1, 0), 5);
    EXPECT_EQ(choices.neighbour(6, -1, 0), 6);
    EXPECT_EQ(choices.neighbour(13, 0, 1), 13) << "the last row has one tile";
    EXPECT_EQ(choices.neighbour(18, 1, 0), 18);
    EXPECT_EQ(choices.neighbour(18, 0, 1), 18);
}

TEST(PresetChoices, TitlesAndSummariesInTheOrderOfThePresets) {
    const PresetChoices choices;
    EXPECT_EQ(choices.titles(), QStringList({QStringLiteral("25 / 5"), QStringLiteral("45 / 15"),
                                             QStringLiteral("50 / 10"), QStringLiteral("90 / 20")}));
    ASSERT_EQ(choices.summaries().size(), 4);
    EXPECT_EQ(choices.summaries().at(1), QStringLiteral("45 min focus, 15 min breaks, 30 min long break"));
}

} // namespace
} // namespace selvane
