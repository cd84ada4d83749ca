#include "Selvane/UI/Controls/LazyPopup.h"

namespace selvane {

void LazyPopup::setSource(const QUrl& source) {
    if (source == _popup.source())
        return;
    _popup.setSource(source);
    Q_EMIT sourceChanged();
}

void LazyPopup::setProperties(const QVariantMap& properties) {
    if (properties == _popup.properties())
        return;
    _popup.setProperties(properties);
    Q_EMIT propertiesChanged();
}

bool LazyPopup::isOpen() const {
    return made() && made()->property("visible").toBool();
}

// The class of popups has no header; what it has is known by name.
void LazyPopup::open() {
    if (!parent())
        return;
    if (!made()) {
        if (!_popup.make(*parent()))
            return;
        connect(made(), SIGNAL(visibleChanged()), this, SIGNAL(isOpenChanged()));
    }
    QMetaObject::invokeMethod(made(), "open");
}

} // namespace selvane
