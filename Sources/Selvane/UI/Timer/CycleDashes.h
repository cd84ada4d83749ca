#pragma once

#include "Selvane/UI/Timer/SteppedItem.h"
#include "Selvane/UI/Timer/TimerFaceModel.h"

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The row of dashes that tells where the phase stands in the cycle. The one under way pulses while the timer
/// runs, a few steps a second. Main thread.
class CycleDashes : public selvane::SteppedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(selvane::TimerFaceModel::Phase phase READ phase WRITE setPhase NOTIFY changed FINAL)
    /// Counts from 1.
    Q_PROPERTY(int position READ position WRITE setPosition NOTIFY changed FINAL)
    Q_PROPERTY(int length READ length WRITE setLength NOTIFY changed FINAL)
    Q_PROPERTY(bool isRunning READ isRunning WRITE setRunning NOTIFY changed FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion WRITE setReducesMotion NOTIFY changed FINAL)
    /// The time that is shown beside the dashes. Its changes are frames that the pulse shares, so that it
    /// asks for fewer of its own.
    Q_PROPERTY(QString time READ time WRITE setTime NOTIFY timeChanged FINAL)
    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY changed FINAL)
    /// Of the ink's opacity; 0 in the beginning.
    Q_PROPERTY(double lift READ lift WRITE setLift NOTIFY changed FINAL)

    /// "Session 2 of 4"
    Q_PROPERTY(QString label READ label NOTIFY changed FINAL)
    /// "Session 2 of 4 before a long break"
    Q_PROPERTY(QString tooltip READ tooltip NOTIFY changed FINAL)

public:
    explicit CycleDashes(QQuickItem* parent = nullptr);

    [[nodiscard]] TimerFaceModel::Phase phase() const { return _phase; }
    void setPhase(TimerFaceModel::Phase phase) { change(_phase, phase); }
    [[nodiscard]] int position() const { return _position; }
    void setPosition(int position) { change(_position, position); }
    [[nodiscard]] int length() const { return _length; }
    void setLength(int length) { change(_length, length); }
    [[nodiscard]] bool isRunning() const { return _isRunning; }
    void setRunning(bool running) { change(_isRunning, running); }
    [[nodiscard]] bool reducesMotion() const { return _reducesMotion; }
    void setReducesMotion(bool reducesMotion) { change(_reducesMotion, reducesMotion); }
    [[nodiscard]] const QString& time() const { return _time; }
    void setTime(const QString& time);
    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink) { change(_ink, ink); }
    [[nodiscard]] double lift() const { return _lift; }
    void setLift(double lift) { change(_lift, lift); }

    [[nodiscard]] QString label() const;
    [[nodiscard]] QString tooltip() const;
    /// Whether a dash is coming and going at present.
    [[nodiscard]] bool isPulsing() const;

Q_SIGNALS:
    void changed();
    void timeChanged();

protected:
    void draw(QPainter& painter) override;
    void step() override;
    void shownChanged() override { followPulse(); }

private:
    template <typename Value>
    void change(Value& member, const Value& value) {
        if (member == value)
            return;
        member = value;
        refresh();
    }
    void refresh();
    void followPulse();
    [[nodiscard]] QRectF dash(int index) const;

    TimerFaceModel::Phase _phase = TimerFaceModel::Focus;
    int _position = 1;
    int _length = 1;
    bool _isRunning = false;
    bool _reducesMotion = false;
    QString _time;
    QColor _ink = Qt::black;
    double _lift = 0;
    Seconds _pulseStart{0};
    bool _follows = false;
};

} // namespace selvane
