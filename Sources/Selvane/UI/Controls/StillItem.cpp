#include "Selvane/UI/Controls/StillItem.h"

#include "Selvane/UI/Controls/StretchedPicture.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <limits>

namespace selvane {

namespace {

/// Pixels that a picture must be smaller by to be stretched; more pieces take longer to draw.
constexpr int worthwhile = 4096;

/// How many pixels of a side can be left out.
int surplus(double length, double least, double pixels) {
    return std::isinf(least) ? 0 : std::max(0, static_cast<int>(std::floor((length - least) * pixels)));
}

} // namespace

StillItem::StillItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QSizeF StillItem::leastSize() const {
    constexpr double never = std::numeric_limits<double>::infinity();
    return {never, never};
}

QSGNode* StillItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    const double pixels = window()->effectiveDevicePixelRatio();
    const QSize full(static_cast<int>(std::ceil(width() * pixels)),
                     static_cast<int>(std::ceil(height() * pixels)));
    if (full.isEmpty() || isClear()) {
        delete node;
        return nullptr;
    }
    const QSizeF least = leastSize();
    QSize leftOut(surplus(width(), least.width(), pixels), surplus(height(), least.height(), pixels));
    QSize kept = full - leftOut;
    if (full.width() * full.height() - kept.width() * kept.height() < worthwhile) {
        leftOut = {0, 0};
        kept = full;
    }
    QImage picture(kept, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing, antialiasing());
        painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth());
        painter.scale(pixels, pixels);
        paint(&painter, size() - QSizeF(leftOut) / pixels);
    }
    // The renderer in software would draw other children of the former node at the window's corner.
    delete node;
    return new StretchedPicture(picture, full, pixels, *window());
}

void StillItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

} // namespace selvane
