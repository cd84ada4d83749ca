#pragma once

#include "Selvane/UI/Controls/StillItem.h"
#include "Selvane/UI/Progress/HeatmapData.h"

#include <QColor>
#include <QRectF>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace selvane {

class HeatmapGrid;
struct HeatmapLayout;

/// The squares of a heatmap with their labels, in one item. The pointer and, with the keyboard's focus, the
/// arrow keys choose a day, whose words stand in `tip`. Main thread.
class HeatmapCanvas : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(selvane::HeatmapData days READ days WRITE setDays NOTIFY daysChanged FINAL)
    /// The number of columns.
    Q_PROPERTY(int weeks READ weeks WRITE setWeeks NOTIFY layoutChanged FINAL)
    /// The side of a square.
    Q_PROPERTY(double cell READ cell WRITE setCell NOTIFY layoutChanged FINAL)
    Q_PROPERTY(double gap READ gap WRITE setGap NOTIFY layoutChanged FINAL)
    /// What the labels and squares are to fill, beginning at the left; 0 if nothing is offered.
    Q_PROPERTY(double offeredWidth READ offeredWidth WRITE setOfferedWidth NOTIFY layoutChanged FINAL)
    Q_PROPERTY(double labelHeight READ labelHeight WRITE setLabelHeight NOTIFY layoutChanged FINAL)
    Q_PROPERTY(double labelSpacing READ labelSpacing WRITE setLabelSpacing NOTIFY layoutChanged FINAL)
    /// What squares are filled with, weaker or stronger.
    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY inkChanged FINAL)
    /// Of the ink's opacity; 0 in the beginning.
    Q_PROPERTY(double lift READ lift WRITE setLift NOTIFY liftChanged FINAL)
    Q_PROPERTY(QColor labelInk READ labelInk WRITE setLabelInk NOTIFY labelInkChanged FINAL)

    /// The chosen day in words, the pointer's before the keyboard's; empty without one.
    Q_PROPERTY(QString tip READ tip NOTIFY tipChanged FINAL)
    /// The square of that day.
    Q_PROPERTY(QRectF tipSquare READ tipSquare NOTIFY tipSquareChanged FINAL)
    /// The pointer chose it.
    Q_PROPERTY(bool isTipOfPointer READ isTipOfPointer NOTIFY tipChanged FINAL)
    /// The day that the keyboard chose in words; empty without the keyboard's focus.
    Q_PROPERTY(QString cursorTip READ cursorTip NOTIFY tipChanged FINAL)
    Q_PROPERTY(QRectF cursorSquare READ cursorSquare NOTIFY tipSquareChanged FINAL)
    /// All days in words.
    Q_PROPERTY(QString summary READ summary NOTIFY daysChanged FINAL)

public:
    explicit HeatmapCanvas(QQuickItem* parent = nullptr);
    ~HeatmapCanvas() override;

    [[nodiscard]] const HeatmapData& days() const { return _days; }
    void setDays(const HeatmapData& days);
    [[nodiscard]] int weeks() const;
    void setWeeks(int weeks);
    [[nodiscard]] double cell() const;
    void setCell(double cell);
    [[nodiscard]] double gap() const;
    void setGap(double gap);
    [[nodiscard]] double offeredWidth() const;
    void setOfferedWidth(double width);
    [[nodiscard]] double labelHeight() const;
    void setLabelHeight(double height);
    [[nodiscard]] double labelSpacing() const;
    void setLabelSpacing(double spacing);
    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);
    [[nodiscard]] double lift() const { return _lift; }
    void setLift(double lift);
    [[nodiscard]] const QColor& labelInk() const { return _labelInk; }
    void setLabelInk(const QColor& ink);

    [[nodiscard]] QString tip() const;
    [[nodiscard]] QRectF tipSquare() const;
    [[nodiscard]] bool isTipOfPointer() const { return _hovered >= 0; }
    [[nodiscard]] QString cursorTip() const;
    [[nodiscard]] QRectF cursorSquare() const;
    [[nodiscard]] QString summary() const;

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void daysChanged();
    void layoutChanged();
    void inkChanged();
    void liftChanged();
    void labelInkChanged();
    /// Always before `tipChanged`, so that words come up where they belong.
    void tipSquareChanged();
    void tipChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& geometry, const QRectF& oldGeometry) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    template <typename Value>
    void setLayout(Value HeatmapLayout::*field, Value value);
    void rebuild();
    void setHovered(int offset);
    void tellOfTip();
    [[nodiscard]] int cursor() const;
    void setCursor(int offset);
    [[nodiscard]] QString words(int offset) const;
    [[nodiscard]] QRectF square(int offset) const;
    void paintSquares(QPainter& painter, double scale) const;
    void paintLabels(QPainter& painter, double scale) const;

    HeatmapData _days;
    std::unique_ptr<HeatmapLayout> _layout;
    std::unique_ptr<HeatmapGrid> _grid;
    QColor _ink = Qt::black;
    double _lift = 0;
    QColor _labelInk = Qt::black;
    /// Days by their offset; -1 for none.
    int _hovered = -1;
    /// -1 for today.
    int _cursor = -1;
};

} // namespace selvane
