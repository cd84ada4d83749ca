#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

class QKeyEvent;

namespace selvane {

/// Lets Return and Enter press the control that this is declared in, which Qt leaves to Space. Only the key
/// alone does; with Ctrl, Alt, Shift or Meta it goes on to whom it is meant for. A key that is held presses
/// once, also Space. Main thread.
///
/// PressArea needs none; this is for the templates' controls.
class PressKeys : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    explicit PressKeys(QObject* parent = nullptr) : QObject(parent) {}

    /// Whether the key is Return or Enter, and no other but that of the keypad is down.
    [[nodiscard]] static bool isReturnAlone(const QKeyEvent& event);

    bool eventFilter(QObject* control, QEvent* event) override;

Q_SIGNALS:
    void pressed();

protected:
    void classBegin() override {}
    void componentComplete() override;
};

} // namespace selvane
