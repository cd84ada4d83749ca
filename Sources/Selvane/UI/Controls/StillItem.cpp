#include "Selvane/UI/Controls/StillItem.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace selvane {

StillItem::StillItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QSGNode* StillItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    const double pixels = window()->effectiveDevicePixelRatio();
    const QSize size(static_cast<int>(std::ceil(width() * pixels)),
                     static_cast<int>(std::ceil(height() * pixels)));
    if (size.isEmpty()) {
        delete node;
        return nullptr;
    }
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing, antialiasing());
        painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth());
        painter.scale(pixels, pixels);
        paint(&painter);
    }
    auto* image = static_cast<QSGImageNode*>(node);
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
    }
    image->setTexture(window()->createTextureFromImage(picture));
    image->setSourceRect(QRectF({}, QSizeF(size)));
    image->setRect({{}, QSizeF(size) / pixels});
    return image;
}

void StillItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

} // namespace selvane
