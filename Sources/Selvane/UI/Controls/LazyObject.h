#pragma once

#include <QPointer>
#include <QUrl>
#include <QVariantMap>

class QObject;

namespace selvane {

/// An object that a QML file describes, made at once when it is first wanted: only then does the engine read
/// that file and the types that it names. What owns it in QML, an item or a popup, decides when. Main thread.
class LazyObject {
public:
    /// An absolute address.
    [[nodiscard]] const QUrl& source() const { return _source; }
    /// For what is made from now on.
    void setSource(const QUrl& source) { _source = source; }

    [[nodiscard]] const QVariantMap& properties() const { return _properties; }
    /// What the object is given as it is made, and whenever it changes afterwards.
    void setProperties(const QVariantMap& properties);

    /// Null until it is made, and after it has gone with its parent.
    [[nodiscard]] QObject* made() const { return _made; }
    /// Makes it unless it is there, as a child of an object of QML; that of an item is seen in the item. A
    /// file that can't be made is logged, and the result is null.
    QObject* make(QObject& parent);
    /// Takes it away. It may be what asks for that, so it is destroyed a little later.
    void dismiss();

private:
    QUrl _source;
    QVariantMap _properties;
    QPointer<QObject> _made;
};

} // namespace selvane
