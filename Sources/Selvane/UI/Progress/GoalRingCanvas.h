#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The ring of today's goal: the part that is reached, from the top clockwise, around the minutes. Main
/// thread.
class GoalRingCanvas : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(int minutes READ minutes WRITE setMinutes NOTIFY minutesChanged FINAL)
    Q_PROPERTY(int goal READ goal WRITE setGoal NOTIFY minutesChanged FINAL)
    /// The part of the goal that is reached, 0 to 1.
    Q_PROPERTY(double reached READ reached NOTIFY minutesChanged FINAL)
    /// The part that is drawn, on its way to the one that is reached.
    Q_PROPERTY(double fraction READ fraction WRITE setFraction NOTIFY fractionChanged FINAL)
    /// The whole in words.
    Q_PROPERTY(QString tooltip READ tooltip NOTIFY minutesChanged FINAL)
    /// The ring's, weaker where the goal is not reached.
    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY inkChanged FINAL)
    /// Of the ink's opacity; 0 in the beginning.
    Q_PROPERTY(double lift READ lift WRITE setLift NOTIFY liftChanged FINAL)
    Q_PROPERTY(QColor textInk READ textInk WRITE setTextInk NOTIFY textInkChanged FINAL)
    Q_PROPERTY(QColor captionInk READ captionInk WRITE setCaptionInk NOTIFY captionInkChanged FINAL)

public:
    /// In pixels of the window, the ring's line included.
    static constexpr double side = 40;

    explicit GoalRingCanvas(QQuickItem* parent = nullptr);

    [[nodiscard]] int minutes() const { return _minutes; }
    void setMinutes(int minutes);
    [[nodiscard]] int goal() const { return _goal; }
    void setGoal(int goal);
    [[nodiscard]] double reached() const;
    [[nodiscard]] double fraction() const { return _fraction; }
    void setFraction(double fraction);
    [[nodiscard]] QString tooltip() const;
    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);
    [[nodiscard]] double lift() const { return _lift; }
    void setLift(double lift);
    [[nodiscard]] const QColor& textInk() const { return _textInk; }
    void setTextInk(const QColor& ink);
    [[nodiscard]] const QColor& captionInk() const { return _captionInk; }
    void setCaptionInk(const QColor& ink);

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void minutesChanged();
    void fractionChanged();
    void inkChanged();
    void liftChanged();
    void textInkChanged();
    void captionInkChanged();

private:
    void paintRing(QPainter& painter) const;
    void paintNumber(QPainter& painter) const;
    void paintCaption(QPainter& painter) const;

    int _minutes = 0;
    int _goal = 0;
    double _fraction = 0;
    QColor _ink = Qt::black;
    double _lift = 0;
    QColor _textInk = Qt::black;
    QColor _captionInk = Qt::black;
};

} // namespace selvane
