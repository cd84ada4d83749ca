#pragma once

#include "SelvaneCore/Date.h"

#include <QMetaObject>
#include <QQuickPaintedItem>
#include <QRectF>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// A painted item that changes in steps of its own while it can be seen. Main thread.
///
/// What derives from it names it with its namespace: the tools of QML find no other name.
class SteppedItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit SteppedItem(QQuickItem* parent = nullptr);

protected:
    /// Whether the item and its window are visible.
    [[nodiscard]] bool isShown() const;
    /// How many pixels of the screen a pixel of the window has on a side.
    [[nodiscard]] double pixelRatio() const;
    /// A clock that only goes forward.
    [[nodiscard]] static Seconds now();

    /// Asks for a frame in which all of the item is painted, or a part of it. An item of which nothing was
    /// painted before is painted whole.
    void repaint();
    void repaint(const QRectF& area);

    /// One call of `step` after this time, unless another is asked for before.
    void stepAfter(Seconds delay);
    void stopSteps() { _timer.stop(); }

    /// One call of `decide` when all that changes now has changed, in time for the next frame. What is
    /// polished is too late for that: it would cost a frame more.
    void decideSoon();
    virtual void decide() {}

    virtual void step() = 0;
    /// The item came before the user, or went. What a window showed before is still painted.
    virtual void shownChanged() = 0;

    void paint(QPainter* painter) final;
    virtual void draw(QPainter& painter) = 0;

    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void noticeShown();

    QTimer _timer;
    QMetaObject::Connection _windowVisibility;
    QMetaObject::Connection _windowContents;
    bool _wasShown = false;
    bool _isDeciding = false;
    /// A part asked for after the whole would take the place of the whole.
    bool _isStale = true;
};

} // namespace selvane
