#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <cstdio>
#include <cstdlib>

/// Draws an SVG file as a square PNG file. Used when building.
///
///     icon-renderer DRAWING.svg SIDE PICTURE.png
int main(int count, char* words[]) {
    if (count != 4) {
        std::fputs("icon-renderer: name a drawing, the side in pixels, and a picture\n", stderr);
        return EXIT_FAILURE;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(words[1]));
    const int side = std::atoi(words[2]);
    if (!drawing.isValid() || side <= 0) {
        std::fprintf(stderr, "icon-renderer: %s can't be drawn at %s pixels\n", words[1], words[2]);
        return EXIT_FAILURE;
    }
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(0, 0, side, side));
    painter.end();
    if (!picture.save(QString::fromLocal8Bit(words[3]), "PNG")) {
        std::fprintf(stderr, "icon-renderer: %s can't be written\n", words[3]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
