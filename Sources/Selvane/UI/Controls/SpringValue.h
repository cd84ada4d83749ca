#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QVariantAnimation>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// A number that follows another as a spring does:
///
///     opacity: presence.value
///
///     SpringValue {
///         id: presence
///
///         target: root.isThere ? 1 : 0
///         animated: !Theme.reducesMotion
///     }
///
/// Until it first moves it is one small object, where a Behavior with its animation is four and a type of its
/// own for the item. Main thread.
class SpringValue : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

    /// Where it goes, as a binding. It begins there.
    Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged FINAL)
    /// Where it is. While the spring swings it passes the target.
    Q_PROPERTY(double value READ value NOTIFY valueChanged FINAL)
    /// False to be there at once, as long as it is false.
    Q_PROPERTY(bool animated READ isAnimated WRITE setAnimated NOTIFY animatedChanged FINAL)
    /// As those of Spring. For motions that begin from now on.
    Q_PROPERTY(double response READ response WRITE setResponse NOTIFY responseChanged FINAL)
    Q_PROPERTY(double dampingFraction READ dampingFraction WRITE setDampingFraction NOTIFY
                   dampingFractionChanged FINAL)

public:
    explicit SpringValue(QObject* parent = nullptr) : QObject(parent) {}

    [[nodiscard]] double target() const { return _target; }
    void setTarget(double target);
    [[nodiscard]] double value() const { return _value; }
    [[nodiscard]] bool isAnimated() const { return _animated; }
    void setAnimated(bool animated);
    [[nodiscard]] double response() const { return _response; }
    void setResponse(double response);
    [[nodiscard]] double dampingFraction() const { return _dampingFraction; }
    void setDampingFraction(double dampingFraction);

Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void animatedChanged();
    void responseChanged();
    void dampingFractionChanged();

protected:
    void classBegin() override {}
    void componentComplete() override;

private:
    void jump();
    void move();
    void setValue(double value);

    double _target = 0;
    double _value = 0;
    double _response = 0.5;
    double _dampingFraction = 1;
    bool _animated = true;
    bool _isComplete = false;
    /// A child, made for the first motion.
    QVariantAnimation* _motion = nullptr;
};

} // namespace selvane
