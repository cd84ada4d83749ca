#pragma once

#include "Selvane/UI/Symbols/SymbolDrawing.h"

#include <QCache>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QString>

#include <functional>

namespace selvane {

/// How heavy a symbol is: as heavy as text of the weight of that name.
enum class SymbolWeight { light, regular, medium, semibold, bold };

/// The width of a symbol's strokes, in ems of the text that it stands beside.
[[nodiscard]] double strokeWidth(SymbolWeight weight);

/// What a symbol looks like.
struct SymbolStyle {
    /// The size of the text that the symbol stands beside, in logical pixels. The square that it is drawn in
    /// is `SymbolImages::squarePerPoint` times as high.
    double size;
    SymbolWeight weight = SymbolWeight::regular;
    /// Device pixels for a logical one.
    double pixelRatio = 1.0;
    /// The last part that is fully lit, from 1 on; the parts after it are faint. Negative: all are lit.
    int level = -1;

    friend bool operator==(const SymbolStyle&, const SymbolStyle&) = default;
    friend std::size_t qHash(const SymbolStyle& style, std::size_t seed = 0) {
        return qHashMulti(seed, style.size, static_cast<int>(style.weight), style.pixelRatio, style.level);
    }
};

/// Makes pictures of symbols and keeps the last ones. One thread.
///
/// A picture is as large as the square and two device pixels more on each side; its device pixel ratio is
/// set. A stroke is never thinner than a device pixel. A name without a drawing, and a size or ratio that is
/// not above 0, give a null image; the former, unless it is empty, with a line in the log, once for each
/// name.
class SymbolImages {
public:
    /// The side of the square that a symbol is drawn in, in sizes of text.
    static constexpr double squarePerPoint = 1.25;
    /// The opacity of a part that is not lit.
    static constexpr double faint = 0.35;

    /// The drawing of a name; one without shapes if there is none.
    using Drawings = std::function<SymbolDrawing(const QString& name)>;

    /// `drawings`: others than those that are compiled in, for tests and tools.
    explicit SymbolImages(Drawings drawings = compiledDrawing);

    /// How opaque each pixel is, of Format_Alpha8.
    [[nodiscard]] QImage mask(const QString& name, const SymbolStyle& style);

    /// The symbol in one colour, of Format_ARGB32_Premultiplied.
    [[nodiscard]] QImage tinted(const QString& name, const SymbolStyle& style, const QColor& color);

    /// How many parts of the symbol can light up one after another; 0 for a name without a drawing.
    [[nodiscard]] int parts(const QString& name);

private:
    struct Key {
        QString name;
        SymbolStyle style;

        friend bool operator==(const Key&, const Key&) = default;
        friend std::size_t qHash(const Key& key, std::size_t seed = 0) {
            return qHashMulti(seed, key.name, key.style);
        }
    };

    [[nodiscard]] static SymbolDrawing compiledDrawing(const QString& name);
    const SymbolDrawing& drawing(const QString& name);

    Drawings _read;
    /// Grows to one entry for each name that was ever asked for.
    QHash<QString, SymbolDrawing> _drawings;
    QCache<Key, QImage> _masks;
};

} // namespace selvane
