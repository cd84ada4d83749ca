#include "Selvane/UI/Symbols/SymbolImages.h"
#include "Selvane/UI/Symbols/SymbolSource.h"
#include "Selvane/UI/Symbols/Symbols.h"

#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <array>
#include <cstdio>

// Draws all symbols with their names on one picture.
//
//     symbol-sheet light|dark SCALE FILE [FOLDER]
//
// FOLDER holds drawings to use instead of those that are compiled in.

namespace {

using namespace selvane;

struct Sample {
    double size;
    SymbolWeight weight;
};

/// As views use them, from the smallest figures of the progress tab to an empty list's picture.
constexpr std::array<Sample, 4> samples{{{24, SymbolWeight::light},
                                         {14, SymbolWeight::medium},
                                         {13, SymbolWeight::medium},
                                         {9, SymbolWeight::semibold}}};
constexpr int columns = 3;
constexpr int columnWidth = 300;
constexpr int rowHeight = 38;
constexpr int margin = 16;
constexpr int firstSampleWidth = 44;
constexpr int sampleWidth = 30;

void drawRow(QPainter& painter, SymbolImages& images, const QString& name, QPointF origin, double scale,
             const QColor& ink) {
    const double middle = origin.y() + rowHeight / 2.0;
    double x = origin.x();
    for (const Sample& sample : samples) {
        const int width = x > origin.x() ? sampleWidth : firstSampleWidth;
        const QImage image = images.tinted(name, {sample.size, sample.weight, scale}, ink);
        const QSizeF size = image.deviceIndependentSize();
        const auto pixel = [scale](double value) { return std::round(value * scale) / scale; };
        painter.drawImage(QPointF(pixel(x + (width - size.width()) / 2), pixel(middle - size.height() / 2)),
                          image);
        x += width;
    }
    painter.setPen(ink);
    painter.drawText(QRectF(x + 6, origin.y(), columnWidth - (x - origin.x()), rowHeight), Qt::AlignVCenter,
                     name);
}

SymbolImages imagesOf(const QString& folder) {
    if (folder.isEmpty())
        return SymbolImages();
    return SymbolImages([folder](const QString& name) {
        return SymbolSource::read(folder + QLatin1Char('/') + name + QStringLiteral(".svg"));
    });
}

int draw(const QStringList& arguments) {
    const bool dark = arguments[1] == QStringLiteral("dark");
    const double scale = arguments[2].toDouble();
    SymbolImages images = imagesOf(arguments.value(4));
    const int rows = (static_cast<int>(Symbols::names.size()) + columns - 1) / columns;
    QImage sheet((QSizeF(2 * margin + columns * columnWidth, 2 * margin + rows * rowHeight) * scale).toSize(),
                 QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    sheet.fill(dark ? QColor(0x1e, 0x1e, 0x1e) : QColor(Qt::white));
    QPainter painter(&sheet);
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(12);
    painter.setFont(font);
    const QColor ink = dark ? QColor(255, 255, 255, 217) : QColor(0, 0, 0, 217);
    int index = 0;
    for (const std::string_view name : Symbols::names) {
        const QPointF origin(margin + index / rows * columnWidth, margin + index % rows * rowHeight);
        drawRow(painter, images, QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())), origin,
                scale, ink);
        ++index;
    }
    painter.end();
    return sheet.convertToFormat(QImage::Format_Grayscale8).save(arguments[3]) ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 4) {
        std::fputs("symbol-sheet light|dark SCALE FILE [FOLDER]\n", stderr);
        return 2;
    }
    return draw(arguments);
}
