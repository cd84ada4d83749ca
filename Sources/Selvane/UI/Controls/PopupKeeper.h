#pragma once

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// Keeps a popup within the card of its window, and closes it when the window is hidden: whoever opens that
/// window again doesn't expect to find it covered. Main thread.
class PopupKeeper : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// A Popup of QtQuick.Templates.
    Q_PROPERTY(QObject* popup READ popup WRITE setPopup NOTIFY popupChanged FINAL)
    /// How near the popup may come to the window's edges, in pixels. Right whenever the popup opens.
    Q_PROPERTY(double margin READ margin NOTIFY marginChanged FINAL)

public:
    explicit PopupKeeper(QObject* parent = nullptr) : QObject(parent) {}

    [[nodiscard]] QObject* popup() const { return _popup; }
    void setPopup(QObject* popup);
    [[nodiscard]] double margin() const { return _margin; }

Q_SIGNALS:
    void popupChanged();
    void marginChanged();

private Q_SLOTS:
    void popupOpens();

private:
    /// Between a popup and the card's edge.
    static constexpr double gap = 8;

    QPointer<QObject> _popup;
    double _margin = gap;
    QMetaObject::Connection _withWindow;
};

} // namespace selvane
