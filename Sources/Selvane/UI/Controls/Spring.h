#pragma once

#include <QEasingCurve>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The motion of a mass on a damped spring that is released at rest at 0 and settles at 1, as a duration and
/// an easing curve for an animation. All that moves gets its shape here.
///
/// The angular frequency is 2π ÷ response; a damping fraction of 1 settles fastest without passing the
/// target, below 1 the motion passes it and swings back. Main thread.
class Spring : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// The period of the undamped spring in seconds, above 0.
    Q_PROPERTY(double response READ response WRITE setResponse NOTIFY changed FINAL)
    /// Above 0, at most 1.
    Q_PROPERTY(double dampingFraction READ dampingFraction WRITE setDampingFraction NOTIFY changed FINAL)
    /// Until the motion stays within a five-hundredth of its target, in milliseconds.
    Q_PROPERTY(int duration READ duration NOTIFY changed FINAL)
    Q_PROPERTY(QEasingCurve curve READ curve NOTIFY changed FINAL)

public:
    explicit Spring(QObject* parent = nullptr) : QObject(parent) {}

    /// Where the mass is `seconds` after the release.
    [[nodiscard]] static double position(double response, double dampingFraction, double seconds);
    /// How fast it moves then, per second.
    [[nodiscard]] static double velocity(double response, double dampingFraction, double seconds);
    /// Seconds until the motion stays within a five-hundredth of its target.
    [[nodiscard]] static double settlingTime(double response, double dampingFraction);

    [[nodiscard]] double response() const { return _response; }
    void setResponse(double response);
    [[nodiscard]] double dampingFraction() const { return _dampingFraction; }
    void setDampingFraction(double fraction);

    [[nodiscard]] int duration() const;
    [[nodiscard]] QEasingCurve curve() const;

Q_SIGNALS:
    void changed();

private:
    double _response = 0.5;
    double _dampingFraction = 1;
};

} // namespace selvane
