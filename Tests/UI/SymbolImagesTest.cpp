#include "Selvane/UI/Symbols/SymbolImages.h"

#include "Selvane/UI/Symbols/SymbolSource.h"
#include "Selvane/UI/Symbols/Symbols.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace selvane {
namespace {

constexpr SymbolWeight allWeights[]{SymbolWeight::light, SymbolWeight::regular, SymbolWeight::medium,
                                    SymbolWeight::semibold, SymbolWeight::bold};

QString text(std::string_view name) {
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

int opacity(const QImage& mask, int x, int y) {
    return mask.constScanLine(y)[x];
}

/// The sum of all opacities, in whole pixels.
double ink(const QImage& mask) {
    double sum = 0;
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            sum += opacity(mask, x, y) / 255.0;
    return sum;
}

int darkest(const QImage& mask) {
    int most = 0;
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            most = std::max(most, opacity(mask, x, y));
    return most;
}

/// Symbols of one's own, as files in a folder.
class SymbolFolder {
public:
    void add(const QString& name, const QString& elements) {
        QFile file(_folder.filePath(name + QStringLiteral(".svg")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 24 24\" "
                                  "width=\"24\" height=\"24\" fill=\"none\" stroke=\"#000\" "
                                  "stroke-width=\"2\" stroke-linecap=\"round\">%1</svg>")
                       .arg(elements)
                       .toUtf8());
    }

    [[nodiscard]] SymbolImages images() const {
        return SymbolImages([folder = _folder.path()](const QString& name) {
            return SymbolSource::read(folder + QLatin1Char('/') + name + QStringLiteral(".svg"));
        });
    }

private:
    QTemporaryDir _folder;
};

TEST(SymbolImages, PictureIsTheSquareAndTwoPixelsOnEachSide) {
    SymbolImages images;
    for (const double size : {9.0, 12.0, 13.0, 14.0, 22.0, 24.0})
        for (const double ratio : {1.0, 1.5, 2.0, 3.0})
            for (const std::string_view name : Symbols::names) {
                const QImage image = images.mask(text(name), {size, SymbolWeight::medium, ratio});
                EXPECT_EQ(image.format(), QImage::Format_Alpha8);
                EXPECT_EQ(image.devicePixelRatio(), ratio);
                EXPECT_EQ(image.width(), image.height());
                EXPECT_NEAR(image.width(), size * 1.25 * ratio + 4, 1) << name << " " << size << " " << ratio;
            }
}

TEST(SymbolImages, NothingIsCutOff) {
    SymbolImages images;
    for (const SymbolWeight weight : allWeights)
        for (const double size : {8.0, 9.0, 13.0, 14.0, 24.0})
            for (const std::string_view name : Symbols::names) {
                const QImage mask = images.mask(text(name), {size, weight});
                const int last = mask.width() - 1;
                for (int along = 0; along <= last; ++along) {
                    EXPECT_EQ(opacity(mask, along, 0), 0) << name << " " << size;
                    EXPECT_EQ(opacity(mask, along, last), 0) << name << " " << size;
                    EXPECT_EQ(opacity(mask, 0, along), 0) << name << " " << size;
                    EXPECT_EQ(opacity(mask, last, along), 0) << name << " " << size;
                }
            }
}

TEST(SymbolImages, HeavierWeightsHaveMoreInk) {
    SymbolImages images;
    for (const std::string_view name : Symbols::names) {
        double before = 0;
        for (const SymbolWeight weight : allWeights) {
            const double now = ink(images.mask(text(name), {24, weight, 3}));
            // In a filled shape the cut-out grows as well as the edge.
            if (!name.ends_with(".circle.fill")) {
                EXPECT_GT(now, before) << name;
            }
            EXPECT_GT(now, 0) << name;
            before = now;
        }
    }
}

TEST(SymbolImages, StrokesAreAsWideAsTheWeightSays) {
    SymbolFolder folder;
    folder.add(QStringLiteral("plus"), QStringLiteral("<path d=\"M12 2V22\"/>"));
    SymbolImages images = folder.images();
    for (const SymbolWeight weight : allWeights) {
        const QImage mask = images.mask(QStringLiteral("plus"), {24, weight, 2});
        double width = 0;
        for (int x = 0; x < mask.width(); ++x)
            width += opacity(mask, x, mask.height() / 2) / 255.0;
        EXPECT_NEAR(width, strokeWidth(weight) * 24 * 2, 0.05);
    }
}

TEST(SymbolImages, NoStrokeIsThinnerThanAPixel) {
    SymbolFolder folder;
    folder.add(QStringLiteral("plus"), QStringLiteral("<path d=\"M12 2V22\"/>"));
    SymbolImages images = folder.images();
    for (const double size : {6.0, 8.0, 9.0}) {
        const QImage mask = images.mask(QStringLiteral("plus"), {size, SymbolWeight::light});
        double width = 0;
        for (int x = 0; x < mask.width(); ++x)
            width += opacity(mask, x, mask.height() / 2) / 255.0;
        EXPECT_NEAR(width, 1.0, 0.02) << size;
    }
}

/// At scale 1 a stroke is little more than a pixel; between two pixels it would be a grey band.
TEST(SymbolImages, StraightStrokesHaveAFullPixel) {
    SymbolImages images;
    for (const double size : {9.0, 10.0, 12.0, 13.0, 14.0}) {
        const QImage mask = images.mask(QStringLiteral("plus"), {size, SymbolWeight::medium});
        const int middle = mask.width() / 2;
        EXPECT_EQ(mask.width() % 2, 1) << size;
        EXPECT_GE(opacity(mask, middle, middle - 3), 253) << size;
        EXPECT_GE(opacity(mask, middle - 3, middle), 253) << size;
    }
}

TEST(SymbolImages, DotFollowsTheStrokeAboveIt) {
    SymbolImages images;
    for (const double size : {12.0, 13.0, 14.0})
        for (const char* const name : {"exclamationmark.circle", "exclamationmark.triangle"}) {
            const QImage mask = images.mask(text(name), {size, SymbolWeight::medium});
            const int middle = mask.width() / 2;
            EXPECT_GE(opacity(mask, middle, middle), 253) << name << " " << size;
            for (int y = 0; y < mask.height(); ++y)
                EXPECT_NEAR(opacity(mask, middle - 1, y), opacity(mask, middle + 1, y), 3)
                    << name << " " << y;
        }
}

TEST(SymbolImages, DotsInARowAreAlike) {
    SymbolImages images;
    for (const double size : {9.0, 13.0, 14.0}) {
        const QImage mask = images.mask(QStringLiteral("ellipsis"), {size, SymbolWeight::semibold});
        std::vector<int> row;
        for (int x = 0; x < mask.width(); ++x)
            row.push_back(opacity(mask, x, mask.height() / 2));
        std::vector<std::vector<int>> dots;
        for (std::size_t x = 1; x < row.size(); ++x) {
            if (row[x] == 0)
                continue;
            if (row[x - 1] == 0)
                dots.emplace_back();
            dots.back().push_back(row[x]);
        }
        ASSERT_EQ(dots.size(), 3U) << size;
        for (const std::vector<int>& dot : dots) {
            ASSERT_EQ(dot.size(), dots.front().size()) << size;
            for (std::size_t x = 0; x < dot.size(); ++x)
                EXPECT_NEAR(dot[x], dots.front()[x], 6) << size;
        }
    }
}

TEST(SymbolImages, LevelStrokesHaveAFullPixelWhereverTheyLie) {
    SymbolFolder folder;
    SymbolImages images = folder.images();
    const QString names[]{QStringLiteral("plus"), QStringLiteral("eye"), QStringLiteral("book"),
                          QStringLiteral("moon")};
    const double positions[]{3.0, 4.3, 9.7, 20.9};
    for (int index = 0; index < 4; ++index) {
        folder.add(names[index], QStringLiteral("<path d=\"M4 %1H20\"/>").arg(positions[index]));
        for (const double size : {9.0, 13.0, 14.0})
            EXPECT_GE(darkest(images.mask(names[index], {size, SymbolWeight::medium})), 253)
                << positions[index] << " " << size;
    }
}

TEST(SymbolImages, FilledShapesHaveSharpEdges) {
    SymbolImages images;
    for (const double size : {13.0, 14.0}) {
        const QImage mask = images.mask(QStringLiteral("pause.fill"), {size, SymbolWeight::medium});
        const int y = mask.height() / 2;
        int outside = 0;
        while (opacity(mask, outside, y) == 0)
            ++outside;
        EXPECT_GE(opacity(mask, outside, y), 250) << size;
        EXPECT_EQ(mask.width() - outside - 1, [&] {
            int last = mask.width() - 1;
            while (opacity(mask, last, y) == 0)
                --last;
            return last;
        }()) << size;
    }
}

TEST(SymbolImages, RoundSymbolsStayRound) {
    SymbolImages images;
    for (const double size : {9.0, 10.0, 11.0, 12.0, 13.0, 14.0, 24.0})
        for (const char* const name :
             {"exclamationmark.circle.fill", "minus.circle.fill", "globe", "scope"}) {
            const QImage mask = images.mask(text(name), {size, SymbolWeight::medium});
            int firstColumn = 0;
            int firstRow = 0;
            const int middle = mask.width() / 2;
            while (opacity(mask, firstColumn, middle) == 0)
                ++firstColumn;
            while (opacity(mask, middle, firstRow) == 0)
                ++firstRow;
            EXPECT_EQ(firstColumn, firstRow) << name << " " << size;
        }
}

TEST(SymbolImages, SymmetricalSymbolsStaySymmetrical) {
    SymbolImages images;
    for (const double size : {9.0, 10.0, 12.0, 13.0, 14.0, 22.0})
        for (const char* const name :
             {"target", "scope", "pause.fill", "eye", "heart", "trophy", "headphones", "snowflake", "sun.max",
              "laptopcomputer", "globe", "plus", "ellipsis"}) {
            const QImage mask = images.mask(text(name), {size, SymbolWeight::medium});
            for (int y = 0; y < mask.height(); ++y)
                for (int x = 0; x < mask.width() / 2; ++x)
                    EXPECT_NEAR(opacity(mask, x, y), opacity(mask, mask.width() - 1 - x, y), 14)
                        << name << " " << size << " at " << x << ", " << y;
        }
}

TEST(SymbolImages, WhiteTakesInkAway) {
    SymbolImages images;
    const QImage mask = images.mask(QStringLiteral("minus.circle.fill"), {24, SymbolWeight::medium, 2});
    const int middle = mask.width() / 2;
    EXPECT_EQ(opacity(mask, middle, middle), 0);
    EXPECT_EQ(opacity(mask, middle, middle + 12), 255);
}

TEST(SymbolImages, TintKeepsTheShapeAndTakesTheColor) {
    SymbolImages images;
    const SymbolStyle style{24, SymbolWeight::bold, 2};
    const QImage mask = images.mask(QStringLiteral("flame.fill"), style);
    const QImage tinted = images.tinted(QStringLiteral("flame.fill"), style, QColor(200, 100, 50, 128));
    ASSERT_EQ(tinted.size(), mask.size());
    EXPECT_EQ(tinted.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(tinted.devicePixelRatio(), 2.0);
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x) {
            const QColor color = tinted.pixelColor(x, y);
            EXPECT_NEAR(color.alpha(), opacity(mask, x, y) * 128 / 255.0, 1);
            if (opacity(mask, x, y) == 255) {
                EXPECT_NEAR(color.red(), 200, 2);
                EXPECT_NEAR(color.green(), 100, 2);
                EXPECT_NEAR(color.blue(), 50, 2);
            }
        }
}

TEST(SymbolImages, PartsBeyondTheLevelAreFaint) {
    SymbolImages images;
    const auto waveform = [&](int level) {
        return images.mask(QStringLiteral("waveform"), {24, SymbolWeight::medium, 2, level});
    };
    const QImage all = waveform(-1);
    EXPECT_EQ(waveform(5), all);
    EXPECT_EQ(waveform(9), all);
    EXPECT_NE(waveform(4), all);
    const QImage none = waveform(0);
    EXPECT_NEAR(darkest(none), 255 * 0.35, 2);
    EXPECT_NEAR(ink(none), ink(all) * 0.35, ink(all) * 0.02);
    const QImage three = waveform(3);
    const int y = all.height() / 2;
    for (int x = 0; x < all.width(); ++x)
        EXPECT_NEAR(opacity(three, x, y), opacity(all, x, y) * (x > all.width() * 0.6 ? 0.35 : 1.0), 2) << x;
}

TEST(SymbolImages, LevelDoesNothingToASymbolWithoutParts) {
    SymbolImages images;
    EXPECT_EQ(images.parts(QStringLiteral("eye")), 0);
    EXPECT_EQ(images.mask(QStringLiteral("eye"), {13, SymbolWeight::medium, 1, 0}),
              images.mask(QStringLiteral("eye"), {13, SymbolWeight::medium, 1}));
}

TEST(SymbolImages, UnknownNamesAreEmptyAndToldOnce) {
    SymbolImages images;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(images.mask(QStringLiteral("star"), {13}).isNull());
    EXPECT_TRUE(images.tinted(QStringLiteral("star"), {14}, Qt::black).isNull());
    EXPECT_EQ(images.parts(QStringLiteral("star")), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Selvane: there is no symbol named \"star\"\n");
}

TEST(SymbolImages, NoNameIsNoSymbolAndNotWorthALine) {
    SymbolImages images;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(images.mask(QString(), {13}).isNull());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SymbolImages, SizesThatAreNoneGiveNoImage) {
    SymbolImages images;
    for (const double size : {0.0, -3.0, std::nan("")})
        EXPECT_TRUE(images.mask(QStringLiteral("eye"), {size}).isNull()) << size;
    EXPECT_TRUE(images.mask(QStringLiteral("eye"), {13, SymbolWeight::medium, 0}).isNull());
}

TEST(SymbolImages, SameQuestionGivesTheSamePixels) {
    SymbolImages images;
    const QImage first = images.mask(QStringLiteral("eye"), {13, SymbolWeight::medium});
    const QImage second = images.mask(QStringLiteral("eye"), {13, SymbolWeight::medium});
    EXPECT_EQ(first.constBits(), second.constBits()) << "kept, not drawn again";
    EXPECT_NE(images.mask(QStringLiteral("eye"), {13, SymbolWeight::bold}), first);
    EXPECT_NE(images.mask(QStringLiteral("eye"), {14, SymbolWeight::medium}), first);
    EXPECT_NE(images.mask(QStringLiteral("heart"), {13, SymbolWeight::medium}), first);
}

TEST(SymbolImages, OldPicturesMakeRoomForNewOnes) {
    SymbolImages images;
    const QImage first = images.mask(QStringLiteral("eye"), {13});
    for (int size = 100; size < 140; ++size)
        ASSERT_FALSE(
            images.mask(QStringLiteral("eye"), {static_cast<double>(size), SymbolWeight::bold, 1}).isNull());
    const QImage again = images.mask(QStringLiteral("eye"), {13});
    EXPECT_NE(first.constBits(), again.constBits());
    EXPECT_EQ(first, again);
}

} // namespace
} // namespace selvane
