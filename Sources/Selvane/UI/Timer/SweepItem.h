#pragma once

#include "Selvane/UI/Timer/SteppedItem.h"
#include "Selvane/UI/Timer/Sweep.h"

#include <QColor>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// What draws the progress of a phase as a line that grows. While the timer runs it moves evenly from tick to
/// tick, else as a spring; where nothing may move, or nobody sees it, it jumps. Main thread.
class SweepItem : public selvane::SteppedItem {
    Q_OBJECT
    QML_ANONYMOUS

    /// The share of the line that is to be drawn, from 0 to 1.
    Q_PROPERTY(double progress READ progress WRITE setProgress NOTIFY progressChanged FINAL)
    Q_PROPERTY(bool isRunning READ isRunning WRITE setRunning NOTIFY isRunningChanged FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion WRITE setReducesMotion NOTIFY reducesMotionChanged FINAL)
    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY inkChanged FINAL)

public:
    explicit SweepItem(QQuickItem* parent = nullptr);

    [[nodiscard]] double progress() const { return _progress; }
    void setProgress(double progress);
    [[nodiscard]] bool isRunning() const { return _isRunning; }
    void setRunning(bool running);
    [[nodiscard]] bool reducesMotion() const { return _reducesMotion; }
    void setReducesMotion(bool reducesMotion);
    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);

    /// What is drawn at present of the progress.
    [[nodiscard]] double shownProgress() const { return _shown; }
    /// How much of the head is drawn, from 0 to 1.
    [[nodiscard]] double headPresence() const { return _headPresence; }

Q_SIGNALS:
    void progressChanged();
    void isRunningChanged();
    void reducesMotionChanged();
    void inkChanged();

protected:
    /// The whole line, in pixels of the window.
    [[nodiscard]] virtual double pathLength() const = 0;
    /// What looks different when the line grows or shrinks from one share to the other.
    [[nodiscard]] virtual QRectF changedArea(double from, double to) const = 0;

    void step() override;
    void shownChanged() override;
    void componentComplete() override;
    void decide() override;

private:
    void show();

    double _progress = 0;
    bool _isRunning = false;
    bool _reducesMotion = false;
    QColor _ink = Qt::black;
    Sweep _sweep;
    double _shown = 0;
    double _headPresence = 0;
};

} // namespace selvane
