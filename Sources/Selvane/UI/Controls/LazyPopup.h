#pragma once

#include "Selvane/UI/Controls/LazyObject.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// A menu or a card that is made when it is first opened, and kept. It belongs to the item that this is
/// declared in:
///
///     LazyPopup {
///         id: menu
///
///         source: Qt.resolvedUrl("PhaseChoices.qml")
///         properties: ({ model: root.model })
///     }
///     onClicked: menu.open()
///
/// Main thread.
class LazyPopup : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// The QML file of the popup, an absolute address.
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// What the popup is given, as a binding.
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY propertiesChanged FINAL)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged FINAL)

public:
    explicit LazyPopup(QObject* parent = nullptr) : QObject(parent) {}

    [[nodiscard]] const QUrl& source() const { return _popup.source(); }
    void setSource(const QUrl& source);
    [[nodiscard]] const QVariantMap& properties() const { return _popup.properties(); }
    void setProperties(const QVariantMap& properties);
    [[nodiscard]] bool isOpen() const;

    /// Where the popup's file says that it stands.
    Q_INVOKABLE void open();

    /// Null until it is first opened.
    [[nodiscard]] QObject* made() const { return _popup.made(); }

Q_SIGNALS:
    void sourceChanged();
    void propertiesChanged();
    void isOpenChanged();

private:
    LazyObject _popup;
};

} // namespace selvane
