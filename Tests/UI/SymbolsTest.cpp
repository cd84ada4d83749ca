#include "Selvane/UI/Symbols/Symbols.h"

#include "Selvane/App/SettingChoices.h"
#include "Selvane/UI/Symbols/SymbolDrawing.h"
#include "Selvane/UI/Symbols/SymbolSource.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace selvane {
namespace {

using testing::Not;

QString fileOf(std::string_view name) {
    return QStringLiteral(":/selvane/symbols/%1.symbol").arg(QString::fromStdString(std::string(name)));
}

/// Where ink and what takes it away lie on the grid, at the heaviest weight.
QRectF inkOf(const SymbolDrawing& drawing) {
    constexpr double boldest = 2.7;
    QRectF ink;
    for (const SymbolDrawing::Shape& shape : drawing.shapes) {
        const double half = shape.strokes * boldest / 2;
        if (!shape.erases)
            ink |= shape.path.boundingRect().adjusted(-half, -half, half, half);
    }
    return ink;
}

TEST(Symbols, EveryNameHasADrawing) {
    for (const std::string_view name : Symbols::names)
        EXPECT_FALSE(SymbolDrawing::fromFile(fileOf(name)).shapes.empty()) << name;
}

TEST(Symbols, EveryDrawingHasAName) {
    const QStringList files = QDir(QStringLiteral(":/selvane/symbols")).entryList();
    EXPECT_EQ(files.size(), static_cast<qsizetype>(Symbols::names.size()));
    for (const QString& file : files) {
        ASSERT_TRUE(file.endsWith(QStringLiteral(".symbol"))) << file.toStdString();
        EXPECT_TRUE(Symbols::contains(file.chopped(7).toStdString())) << file.toStdString();
    }
}

TEST(Symbols, EverySymbolToChooseFromHasADrawing) {
    for (const std::string_view name : symbolChoices)
        EXPECT_TRUE(Symbols::contains(name)) << name;
}

TEST(Symbols, OtherTextsAreNoNames) {
    for (const std::string_view name : {"", "star", "Eye", "eye ", "eye.svg", "../Symbols/eye"})
        EXPECT_FALSE(Symbols::contains(name)) << name;
}

TEST(Symbols, DrawingsStayOnTheGrid) {
    for (const std::string_view name : Symbols::names) {
        const QRectF ink = inkOf(SymbolDrawing::fromFile(fileOf(name)));
        EXPECT_GE(ink.left(), 0.5) << name;
        EXPECT_GE(ink.top(), 0.5) << name;
        EXPECT_LE(ink.right(), SymbolDrawing::side - 0.5) << name;
        EXPECT_LE(ink.bottom(), SymbolDrawing::side - 0.5) << name;
    }
}

TEST(Symbols, DrawingsStandInTheMiddleOfTheGrid) {
    for (const std::string_view name : Symbols::names) {
        const QPointF centre = inkOf(SymbolDrawing::fromFile(fileOf(name))).center();
        EXPECT_NEAR(centre.x(), SymbolDrawing::side / 2, 0.8) << name;
        EXPECT_NEAR(centre.y(), SymbolDrawing::side / 2, 0.8) << name;
    }
}

/// What is filled in is as large as the outline that it belongs to, so that one can take the other's place.
TEST(Symbols, FilledVariantsHaveTheirOutlinesShape) {
    int pairs = 0;
    for (const std::string_view name : Symbols::names) {
        const std::string filled = std::string(name) + ".fill";
        if (!Symbols::contains(filled))
            continue;
        const SymbolDrawing outline = SymbolDrawing::fromFile(fileOf(name));
        const SymbolDrawing silhouette = SymbolDrawing::fromFile(fileOf(filled));
        EXPECT_EQ(silhouette.shapes.front().path, outline.shapes.front().path) << name;
        EXPECT_TRUE(silhouette.shapes.front().filled) << name;
        EXPECT_FALSE(outline.shapes.front().filled) << name;
        ++pairs;
    }
    EXPECT_EQ(pairs, 3) << "flame, checkmark.circle, exclamationmark.circle";
}

TEST(Symbols, PartsAreSomeOfTheShapes) {
    for (const std::string_view name : Symbols::names) {
        const SymbolDrawing drawing = SymbolDrawing::fromFile(fileOf(name));
        EXPECT_LE(drawing.parts, static_cast<int>(drawing.shapes.size())) << name;
    }
    EXPECT_EQ(SymbolDrawing::fromFile(fileOf("cloud.rain")).parts, 3);
    EXPECT_EQ(SymbolDrawing::fromFile(fileOf("waveform")).parts, 5);
    EXPECT_EQ(SymbolDrawing::fromFile(fileOf("eye")).parts, 0);
}

TEST(Symbols, NoFileGivesADrawingWithoutShapes) {
    EXPECT_TRUE(SymbolDrawing::fromFile(fileOf("star")).shapes.empty());
    EXPECT_TRUE(SymbolSource::read(fileOf("star")).shapes.empty());
}

TEST(Symbols, WhatIsSavedIsReadAgain) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.symbol"));
    for (const std::string_view name : Symbols::names) {
        const SymbolDrawing drawing = SymbolDrawing::fromFile(fileOf(name));
        ASSERT_TRUE(drawing.save(path));
        EXPECT_EQ(SymbolDrawing::fromFile(path), drawing) << name;
    }
    EXPECT_FALSE(SymbolDrawing().save(folder.filePath(QStringLiteral("missing/a.symbol"))));
}

TEST(Symbols, FileCutShortGivesADrawingWithoutShapes) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.symbol"));
    ASSERT_TRUE(SymbolDrawing::fromFile(fileOf("eye")).save(path));
    QFile file(path);
    ASSERT_TRUE(file.resize(file.size() - 1));
    EXPECT_EQ(SymbolDrawing::fromFile(path), SymbolDrawing());
}

} // namespace
} // namespace selvane
