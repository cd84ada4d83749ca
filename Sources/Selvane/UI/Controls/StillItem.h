#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QPainter;

namespace selvane {

/// An item that is painted whole, and painted again only when `update()` asks for it or its size changes. It
/// keeps one picture of itself, where a QQuickPaintedItem that is drawn without a graphics card keeps two.
/// Main thread.
///
/// What derives from it names it with its namespace: the tools of QML find no other name.
class StillItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit StillItem(QQuickItem* parent = nullptr);

    /// Paints in pixels of the window, from the item's corner. What lies outside the item isn't shown.
    virtual void paint(QPainter* painter) = 0;

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
};

} // namespace selvane
