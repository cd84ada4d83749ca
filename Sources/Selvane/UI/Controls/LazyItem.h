#pragma once

#include "Selvane/UI/Controls/LazyObject.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The place of a part of a view that is made when it is first wanted:
///
///     LazyItem {
///         anchors.fill: parent
///         source: Qt.resolvedUrl("TitleEditor.qml")
///         properties: ({ tasks: root.tasks })
///         wanted: root.isEditing
///     }
///
/// An item fills the place, and the place is as large as the item unless something else says how large it is.
/// A popup stands beside it. Main thread.
class LazyItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    /// The QML file of the part, an absolute address.
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// What the part is given, as a binding.
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties NOTIFY propertiesChanged FINAL)
    /// The wish for the part, as a binding.
    Q_PROPERTY(bool wanted READ isWanted WRITE setWanted NOTIFY wantedChanged FINAL)
    /// Whether the part stays when it isn't wanted any more. In the beginning it doesn't.
    Q_PROPERTY(bool kept READ isKept WRITE setKept NOTIFY keptChanged FINAL)
    /// The part while it is there, for those who listen to it.
    Q_PROPERTY(QObject* made READ made NOTIFY madeChanged FINAL)

public:
    explicit LazyItem(QQuickItem* parent = nullptr) : QQuickItem(parent) {}
    ~LazyItem() override;

    [[nodiscard]] const QUrl& source() const { return _part.source(); }
    void setSource(const QUrl& source);
    [[nodiscard]] const QVariantMap& properties() const { return _part.properties(); }
    void setProperties(const QVariantMap& properties);
    [[nodiscard]] bool isWanted() const { return _wanted; }
    void setWanted(bool wanted);
    [[nodiscard]] bool isKept() const { return _kept; }
    void setKept(bool kept);

    /// What is there now; null if nothing is.
    [[nodiscard]] QObject* made() const { return _part.made(); }

Q_SIGNALS:
    void sourceChanged();
    void propertiesChanged();
    void wantedChanged();
    void keptChanged();
    void madeChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    void follow();
    void takeMeasure();

    LazyObject _part;
    bool _wanted = false;
    bool _kept = false;
};

} // namespace selvane
