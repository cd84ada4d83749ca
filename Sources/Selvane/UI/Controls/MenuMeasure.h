#pragma once

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace selvane {

/// How wide the rows of a menu want to be: as the widest of them. Main thread.
class MenuMeasure : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// A Menu of QtQuick.Templates.
    Q_PROPERTY(QObject* menu READ menu WRITE setMenu NOTIFY menuChanged FINAL)
    Q_PROPERTY(double width READ width NOTIFY widthChanged FINAL)

public:
    explicit MenuMeasure(QObject* parent = nullptr) : QObject(parent) {}

    [[nodiscard]] QObject* menu() const { return _menu; }
    void setMenu(QObject* menu);
    [[nodiscard]] double width() const { return _width; }

Q_SIGNALS:
    void menuChanged();
    void widthChanged();

private Q_SLOTS:
    void measure();

private:
    [[nodiscard]] QQuickItem* row(int index) const;

    QPointer<QObject> _menu;
    double _width = 0;
};

} // namespace selvane
