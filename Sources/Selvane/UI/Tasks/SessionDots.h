#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// A row of small circles, one a session that a task is estimated to take, those of done sessions stronger.
/// One item however many circles there are, and as wide as they need. What they mean is said elsewhere. Main
/// thread.
class SessionDots : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(int done READ done WRITE setDone NOTIFY doneChanged FINAL)
    /// The circles, up to 20; more are drawn as 20, filled in proportion. See `TaskText::dots`.
    Q_PROPERTY(int total READ total WRITE setTotal NOTIFY totalChanged FINAL)
    Q_PROPERTY(QColor doneColor READ doneColor WRITE setDoneColor NOTIFY doneColorChanged FINAL)
    Q_PROPERTY(QColor openColor READ openColor WRITE setOpenColor NOTIFY openColorChanged FINAL)

public:
    explicit SessionDots(QQuickItem* parent = nullptr);

    [[nodiscard]] int done() const { return _done; }
    void setDone(int done);
    [[nodiscard]] int total() const { return _total; }
    void setTotal(int total);
    [[nodiscard]] QColor doneColor() const { return _doneColor; }
    void setDoneColor(const QColor& color);
    [[nodiscard]] QColor openColor() const { return _openColor; }
    void setOpenColor(const QColor& color);

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void doneChanged();
    void totalChanged();
    void doneColorChanged();
    void openColorChanged();

private:
    int _done = 0;
    int _total = 0;
    QColor _doneColor;
    QColor _openColor;
};

} // namespace selvane
