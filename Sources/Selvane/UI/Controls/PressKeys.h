#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// Lets Return and Enter press the control that this is declared in, which Qt leaves to Space. Only the key
/// alone does; with Ctrl, Alt, Shift or Meta it goes on to whom it is meant for. A key that is held presses
/// once, also Space. Main thread.
class PressKeys : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    explicit PressKeys(QObject* parent = nullptr) : QObject(parent) {}

    bool eventFilter(QObject* control, QEvent* event) override;

Q_SIGNALS:
    void pressed();

protected:
    void classBegin() override {}
    void componentComplete() override;
};

} // namespace selvane
