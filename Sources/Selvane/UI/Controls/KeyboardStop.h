#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// An item that Tab stops at and a click passes by. Unlike the templates' controls it leaves its role for
/// assistive technology to QML. Main thread.
class KeyboardStop : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    /// True while the keyboard is here and came by a key, so that it should be seen.
    Q_PROPERTY(bool visualFocus READ hasVisualFocus NOTIFY visualFocusChanged FINAL)

public:
    explicit KeyboardStop(QQuickItem* parent = nullptr);

    [[nodiscard]] bool hasVisualFocus() const { return _visualFocus; }

Q_SIGNALS:
    void visualFocusChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setVisualFocus(bool visualFocus);

    bool _visualFocus = false;
};

} // namespace selvane
