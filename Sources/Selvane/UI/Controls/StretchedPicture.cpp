#include "Selvane/UI/Controls/StretchedPicture.h"

#include <QImage>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <array>
#include <span>

namespace selvane {

namespace {

/// A part of a side, in device pixels: where it is in the picture, and where it is drawn.
struct Piece {
    int from = 0;
    int length = 0;
    int to = 0;
    int drawnLength = 0;

    [[nodiscard]] bool isStretched() const { return length != drawnLength; }
};

/// One piece, or three of which the middle one is stretched.
class Pieces {
public:
    Pieces(int length, int drawnLength) {
        if (length == drawnLength) {
            _pieces[0] = {0, length, 0, length};
            return;
        }
        const int middle = length / 2;
        const int rest = length - middle - 1;
        _pieces = {{{0, middle, 0, middle},
                    {middle, 1, middle, drawnLength - length + 1},
                    {middle + 1, rest, drawnLength - rest, rest}}};
        _count = 3;
    }

    [[nodiscard]] std::span<const Piece> all() const { return std::span(_pieces).first(_count); }

private:
    std::array<Piece, 3> _pieces{};
    std::size_t _count = 1;
};

} // namespace

StretchedPicture::StretchedPicture(const QImage& picture, QSize full, double pixels, QQuickWindow& window)
    : _texture(window.createTextureFromImage(picture)) {
    const Pieces columns(picture.width(), full.width());
    const Pieces rows(picture.height(), full.height());
    for (const Piece& row : rows.all()) {
        for (const Piece& column : columns.all()) {
            const QRectF place(column.to / pixels, row.to / pixels, column.drawnLength / pixels,
                               row.drawnLength / pixels);
            const QColor color = picture.pixelColor(column.from, row.from);
            // A pixel as a rectangle is drawn several times faster, and in some clear colours a shade off.
            if (column.isStretched() && row.isStretched() && color.alpha() == 255) {
                QSGRectangleNode* const node = window.createRectangleNode();
                node->setColor(color);
                node->setRect(place);
                appendChildNode(node);
                continue;
            }
            QSGImageNode* const node = window.createImageNode();
            node->setTexture(_texture.get());
            node->setSourceRect(QRectF(column.from, row.from, column.length, row.length));
            node->setRect(place);
            appendChildNode(node);
        }
    }
}

} // namespace selvane
