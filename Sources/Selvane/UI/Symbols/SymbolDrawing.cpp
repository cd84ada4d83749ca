#include "Selvane/UI/Symbols/SymbolDrawing.h"

#include <QDataStream>
#include <QFile>

#include <utility>

namespace selvane {

namespace {

/// The Qt that wrote the file may be older than the one that reads it.
constexpr auto format = QDataStream::Qt_6_4;

} // namespace

SymbolDrawing SymbolDrawing::fromFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QDataStream stream(&file);
    stream.setVersion(format);
    SymbolDrawing drawing;
    qint32 shapes = 0;
    stream >> drawing.parts >> shapes;
    for (qint32 index = 0; index < shapes && stream.status() == QDataStream::Ok; ++index) {
        Shape shape{};
        stream >> shape.path >> shape.filled >> shape.strokes >> shape.erases;
        drawing.shapes.push_back(std::move(shape));
    }
    if (stream.status() != QDataStream::Ok)
        return {};
    return drawing;
}

bool SymbolDrawing::save(const QString& path) const {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setVersion(format);
    stream << parts << static_cast<qint32>(shapes.size());
    for (const Shape& shape : shapes)
        stream << shape.path << shape.filled << shape.strokes << shape.erases;
    return stream.status() == QDataStream::Ok && file.flush();
}

} // namespace selvane
