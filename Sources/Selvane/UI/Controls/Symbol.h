#pragma once

#include <QColor>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QVariantAnimation;

namespace selvane {

class SymbolImages;

/// One of the program's symbols, in one colour, in the middle of the item. Decoration: what it means is said
/// by the control that bears it. Main thread; items share the pictures that were made, for as long as there
/// is an item. A name without a drawing shows nothing.
class Symbol : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    /// What is drawn: the name, or the former one as long as that goes.
    Q_PROPERTY(QString shown READ shown NOTIFY shownChanged FINAL)
    /// Whether another name makes the symbol shrink and grow again as the other. False in the beginning.
    Q_PROPERTY(bool replaces READ isReplacing WRITE setReplacing NOTIFY replacesChanged FINAL)
    /// Drawn to stand beside text of this size, in pixels of the window. The item wants to be a square
    /// of 1.25 times that, to the next whole pixel.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged FINAL)
    Q_PROPERTY(Weight weight READ weight WRITE setWeight NOTIFY weightChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    /// The last of the symbol's parts that is fully lit; those after it are faint. Negative: all are lit.
    Q_PROPERTY(int level READ level WRITE setLevel NOTIFY levelChanged FINAL)
    /// How many parts can light up one after another; 0 for most symbols.
    Q_PROPERTY(int parts READ parts NOTIFY shownChanged FINAL)

public:
    /// As heavy as text of the weight of that name.
    enum Weight { Light, Regular, Medium, Semibold, Bold };
    Q_ENUM(Weight)

    explicit Symbol(QQuickItem* parent = nullptr);
    ~Symbol() override;

    [[nodiscard]] const QString& name() const { return _name; }
    void setName(const QString& name);
    [[nodiscard]] const QString& shown() const { return _shown; }
    [[nodiscard]] bool isReplacing() const { return _replaces; }
    void setReplacing(bool replaces);
    [[nodiscard]] double size() const { return _size; }
    void setSize(double size);
    [[nodiscard]] Weight weight() const { return _weight; }
    void setWeight(Weight weight);
    [[nodiscard]] const QColor& color() const { return _color; }
    void setColor(const QColor& color);
    [[nodiscard]] int level() const { return _level; }
    void setLevel(int level);
    [[nodiscard]] int parts() const;

Q_SIGNALS:
    void nameChanged();
    void shownChanged();
    void replacesChanged();
    void sizeChanged();
    void weightChanged();
    void colorChanged();
    void levelChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void show();
    /// Moves the scale there, as a spring does.
    void scaleTo(double scale, double response, double dampingFraction);

    std::shared_ptr<SymbolImages> _images;
    QString _name;
    QString _shown;
    bool _replaces = false;
    /// A child, made for the first replacement.
    QVariantAnimation* _motion = nullptr;
    double _size = 13;
    Weight _weight = Medium;
    QColor _color = Qt::black;
    int _level = -1;
};

} // namespace selvane
