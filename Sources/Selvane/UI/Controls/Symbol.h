#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// One of the program's symbols, in one colour. Decoration: what it means is said by the control that bears
/// it. Main thread.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    /// Drawn to stand beside text of this size, in pixels of the window.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged FINAL)
    Q_PROPERTY(Weight weight READ weight WRITE setWeight NOTIFY weightChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    enum Weight { Light, Regular, Medium, Semibold, Bold };
    Q_ENUM(Weight)

    explicit Symbol(QQuickItem* parent = nullptr);

    [[nodiscard]] const QString& name() const { return _name; }
    void setName(const QString& name);
    [[nodiscard]] double size() const { return _size; }
    void setSize(double size);
    [[nodiscard]] Weight weight() const { return _weight; }
    void setWeight(Weight weight);
    [[nodiscard]] const QColor& color() const { return _color; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void nameChanged();
    void sizeChanged();
    void weightChanged();
    void colorChanged();

private:
    QString _name;
    double _size = 13;
    Weight _weight = Medium;
    QColor _color = Qt::black;
};

} // namespace selvane
