#include "Selvane/UI/Controls/StillItem.h"

#include "Selvane/UI/Controls/StretchedPicture.h"

#include <QByteArray>
#include <QDataStream>
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

/// What is kept for items to come, in bytes. What items show now is in memory anyway.
constexpr qsizetype mostShared = 256 * 1024;

/// The pictures of all items that there are; the last item takes them with it. All windows are drawn by the
/// main thread.
std::shared_ptr<StillItem::Pictures> sharedPictures() {
    static std::weak_ptr<StillItem::Pictures> pictures;
    auto shared = pictures.lock();
    if (!shared) {
        shared = std::make_shared<StillItem::Pictures>(mostShared);
        pictures = shared;
    }
    return shared;
}

/// How many pixels of a side can be left out.
int surplus(double length, double least, double pixels) {
    return std::isinf(least) ? 0 : std::max(0, static_cast<int>(std::floor((length - least) * pixels)));
}

} // namespace

StillItem::StillItem(QQuickItem* parent) : QQuickItem(parent), _pictures(sharedPictures()) {
    setFlag(ItemHasContents);
}

QSizeF StillItem::leastSize() const {
    constexpr double never = std::numeric_limits<double>::infinity();
    return {never, never};
}

void StillItem::describe(QDataStream& /*look*/) const {}

QImage StillItem::sharedPicture(QSize pictureSize, const QSizeF& size, double pixels) {
    QByteArray look;
    QDataStream stream(&look, QIODevice::WriteOnly);
    describe(stream);
    if (look.isEmpty())
        return newPicture(pictureSize, size, pixels);
    stream << size << pixels << antialiasing() << smooth();
    if (const QImage* const same = _pictures->object(look))
        return *same;
    const QImage picture = newPicture(pictureSize, size, pixels);
    _pictures->insert(look, new QImage(picture), picture.sizeInBytes());
    return picture;
}

QImage StillItem::newPicture(QSize pictureSize, const QSizeF& size, double pixels) {
    QImage picture(pictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing, antialiasing());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth());
    painter.scale(pixels, pixels);
    paint(&painter, size);
    return picture;
}

QSGNode* StillItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    const double pixels = window()->effectiveDevicePixelRatio();
    const QSize full(static_cast<int>(std::ceil(width() * pixels)),
                     static_cast<int>(std::ceil(height() * pixels)));
    // Also what is hidden is asked for its picture.
    if (full.isEmpty() || !isVisible() || isClear()) {
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
    const QImage picture = sharedPicture(kept, size() - QSizeF(leftOut) / pixels, pixels);
    // The renderer in software would draw other children of the former node at the window's corner.
    delete node;
    return new StretchedPicture(picture, full, pixels, *window());
}

void StillItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemVisibleHasChanged)
        update();
}

} // namespace selvane
