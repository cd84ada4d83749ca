#pragma once

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace selvane {

/// What the rows of a menu have in common: as wide as the widest of them, and with room for checkmarks if one
/// of them can bear one, so that their words stand below each other. Main thread.
class MenuMeasure : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// A Menu of QtQuick.Templates.
    Q_PROPERTY(QObject* menu READ menu WRITE setMenu NOTIFY menuChanged FINAL)
    Q_PROPERTY(double width READ width NOTIFY widthChanged FINAL)
    Q_PROPERTY(bool markable READ isMarkable NOTIFY markableChanged FINAL)

public:
    explicit MenuMeasure(QObject* parent = nullptr) : QObject(parent) {}

    [[nodiscard]] QObject* menu() const { return _menu; }
    void setMenu(QObject* menu);
    [[nodiscard]] double width() const { return _width; }
    [[nodiscard]] bool isMarkable() const { return _markable; }

Q_SIGNALS:
    void menuChanged();
    void widthChanged();
    void markableChanged();

private Q_SLOTS:
    void measure();

private:
    [[nodiscard]] QQuickItem* row(int index) const;

    QPointer<QObject> _menu;
    double _width = 0;
    bool _markable = false;
};

} // namespace selvane
