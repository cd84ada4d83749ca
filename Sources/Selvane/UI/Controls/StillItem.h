#pragma once

#include <QCache>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QDataStream;
class QPainter;

namespace selvane {

/// An item that is painted whole, and painted again only when `update()` asks for it or its size changes. It
/// keeps one picture of itself, where a QQuickPaintedItem that is drawn without a graphics card keeps two; of
/// what is the same all along it keeps no more than is needed to repeat it, and items that look the same keep
/// one picture together. Main thread.
///
/// What derives from it names it with its namespace: the tools of QML find no other name.
class StillItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    using Pictures = QCache<QByteArray, QImage>;

    explicit StillItem(QQuickItem* parent = nullptr);

    /// Paints the item as if it had that size, which is its own or, where `leastSize()` allows, less. In
    /// pixels of the window, from the item's corner, on ground where nothing is painted yet. What lies
    /// outside the size isn't shown.
    virtual void paint(QPainter* painter, const QSizeF& size) = 0;

protected:
    /// Writes down all that the picture depends on besides its size, so that a picture of an item that wrote
    /// the same is taken for this one too. The name of the class first, as others write likewise. An item
    /// that writes nothing, as in the beginning, has its own picture.
    virtual void describe(QDataStream& look) const;
    /// True if there is nothing to see, so that no picture is needed.
    [[nodiscard]] virtual bool isClear() const { return false; }
    /// The least width at which only a middle that is the same all along is narrower than in the item, and
    /// the least height likewise; infinite where no such middle is, as in the beginning.
    [[nodiscard]] virtual QSizeF leastSize() const;

    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    /// In device pixels, of the item as if it had the other size.
    [[nodiscard]] QImage sharedPicture(QSize pictureSize, const QSizeF& size, double pixels);
    [[nodiscard]] QImage newPicture(QSize pictureSize, const QSizeF& size, double pixels);

    /// By what the items wrote about them.
    std::shared_ptr<Pictures> _pictures;
};

} // namespace selvane
