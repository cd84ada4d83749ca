#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// Remembers what had the keyboard before a passing editor took it, and gives it back as it was. Main thread.
class KeyboardLoan : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit KeyboardLoan(QObject* parent = nullptr) : QObject(parent) {}

    /// An editor is about to take the keyboard of this item's window.
    Q_INVOKABLE void take(QQuickItem* item);
    /// The editor has no use for it any more. Nothing if what had it before is gone.
    Q_INVOKABLE void giveBack();

private:
    QPointer<QQuickItem> _lender;
    /// Whether the lender showed that it has the keyboard.
    bool _wasSeen = false;
};

} // namespace selvane
