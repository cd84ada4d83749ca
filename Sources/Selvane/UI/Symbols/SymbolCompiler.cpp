#include "Selvane/UI/Symbols/SymbolSource.h"

#include <QFileInfo>
#include <QString>

#include <cstdio>

// Turns drawings into the outlines that are compiled into the program, so that it need not read SVG.
//
//     symbol-compiler FOLDER DRAWING.svg ...
//
// Writes FOLDER/DRAWING.symbol for each. Fails on a drawing without shapes.

int main(int argc, char* argv[]) {
    using namespace selvane;
    if (argc < 2) {
        std::fputs("symbol-compiler FOLDER DRAWING.svg ...\n", stderr);
        return 2;
    }
    for (int index = 2; index < argc; ++index) {
        const QString source = QString::fromLocal8Bit(argv[index]);
        const SymbolDrawing drawing = SymbolSource::read(source);
        const QString target = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/') +
                               QFileInfo(source).completeBaseName() + QStringLiteral(".symbol");
        if (drawing.shapes.empty() || !drawing.save(target)) {
            std::fprintf(stderr, "symbol-compiler: can't turn %s into %s\n", argv[index], qPrintable(target));
            return 1;
        }
    }
    return 0;
}
