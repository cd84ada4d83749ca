#pragma once

#include "Selvane/UI/Timer/DigitRoll.h"
#include "Selvane/UI/Timer/SteppedItem.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

/// A time in cells of equal width, so that it doesn't tremble with fonts whose digits differ in width. The
/// digits that change roll down. Decoration: what it says is told by the item around it. Main thread.
class TimeText : public selvane::SteppedItem {
    Q_OBJECT
    QML_ELEMENT

    /// Digits and colons.
    Q_PROPERTY(QString time READ time WRITE setTime NOTIFY timeChanged FINAL)
    /// The size of the font in pixels of the window.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged FINAL)
    /// A longer time is drawn smaller; 0 for any width.
    Q_PROPERTY(double maximumWidth READ maximumWidth WRITE setMaximumWidth NOTIFY maximumWidthChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    /// The time changes by itself, every second.
    Q_PROPERTY(bool isRunning READ isRunning WRITE setRunning NOTIFY isRunningChanged FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion WRITE setReducesMotion NOTIFY reducesMotionChanged FINAL)
    /// The font in which the time is drawn, for what is typed in its place.
    Q_PROPERTY(QFont font READ font NOTIFY fontChanged FINAL)

public:
    explicit TimeText(QQuickItem* parent = nullptr);

    [[nodiscard]] const QString& time() const { return _time; }
    void setTime(const QString& time);
    [[nodiscard]] double size() const { return _size; }
    void setSize(double size);
    [[nodiscard]] double maximumWidth() const { return _maximumWidth; }
    void setMaximumWidth(double width);
    [[nodiscard]] const QColor& color() const { return _color; }
    void setColor(const QColor& color);
    [[nodiscard]] bool isRunning() const { return _isRunning; }
    void setRunning(bool running);
    [[nodiscard]] bool reducesMotion() const { return _reducesMotion; }
    void setReducesMotion(bool reducesMotion);
    [[nodiscard]] const QFont& font() const { return _font; }

    /// How far the rolling digits have come; 1 while all stand still.
    [[nodiscard]] double rollPosition() const { return _roll.position(now()); }
    /// The left edge of each cell, and at last the right edge of the time.
    [[nodiscard]] const std::vector<double>& edges() const { return _edges; }

Q_SIGNALS:
    void timeChanged();
    void sizeChanged();
    void maximumWidthChanged();
    void colorChanged();
    void isRunningChanged();
    void reducesMotionChanged();
    void fontChanged();

protected:
    void draw(QPainter& painter) override;
    void step() override;
    void shownChanged() override;
    void decide() override;

private:
    void layOut();
    void scheduleStep();
    [[nodiscard]] QRectF rollingArea() const;

    QString _time;
    double _size = 40;
    double _maximumWidth = 0;
    QColor _color = Qt::black;
    bool _isRunning = false;
    bool _reducesMotion = false;
    DigitRoll _roll;

    QFont _font;
    std::vector<double> _edges;
    double _baseline = 0;
    double _colonRise = 0;
};

} // namespace selvane
