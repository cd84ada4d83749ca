#include "Selvane/UI/Controls/LazyObject.h"

#include "SelvaneCore/Log.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickItem>

namespace selvane {

void LazyObject::setProperties(const QVariantMap& properties) {
    _properties = properties;
    if (!_made)
        return;
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (_made->property(it.key().toUtf8().constData()) != it.value())
            QQmlProperty::write(_made, it.key(), it.value());
    }
}

QObject* LazyObject::make(QObject& parent) {
    if (_made)
        return _made;
    QQmlContext* const context = qmlContext(&parent);
    if (!context)
        return nullptr;
    QQmlComponent component(context->engine(), _source);
    QObject* const object = component.beginCreate(context);
    if (object) {
        _made = object;
        component.setInitialProperties(object, _properties);
        // Before its bindings and handlers ask for its place.
        object->setParent(&parent);
        if (auto* const item = qobject_cast<QQuickItem*>(object))
            item->setParentItem(qobject_cast<QQuickItem*>(&parent));
        component.completeCreate();
    }
    if (!object || component.isError()) {
        Log::line("a part of a window doesn't load: " + component.errorString().toStdString());
        delete object;
        return nullptr;
    }
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return _made;
}

void LazyObject::dismiss() {
    if (!_made)
        return;
    if (auto* const item = qobject_cast<QQuickItem*>(_made))
        item->setParentItem(nullptr);
    _made->deleteLater();
    _made.clear();
}

} // namespace selvane
