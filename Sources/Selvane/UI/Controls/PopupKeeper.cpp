#include "Selvane/UI/Controls/PopupKeeper.h"

#include "Selvane/UI/Controls/CardMargin.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <utility>

namespace selvane {

namespace {

/// Lets the shortcuts in an item ask again what keeps them from their keys. The module of popups brings the
/// answer that an open popup does; shortcuts that were there before the module would take the popup's keys.
void renewShortcuts(const QQuickItem& item) {
    for (QObject* const child : item.children()) {
        if (!child->inherits("QQuickShortcut"))
            continue;
        const QVariant context = child->property("context");
        child->setProperty("context", static_cast<int>(Qt::ApplicationShortcut));
        child->setProperty("context", context);
    }
    for (const QQuickItem* const child : item.childItems())
        renewShortcuts(*child);
}

} // namespace

void PopupKeeper::setPopup(QObject* popup) {
    if (popup == _popup)
        return;
    if (_popup)
        _popup->disconnect(this);
    _popup = popup;
    // The class of popups has no header; its signals are known by name.
    if (_popup)
        connect(_popup, SIGNAL(aboutToShow()), this, SLOT(popupOpens()));
    Q_EMIT popupChanged();
}

void PopupKeeper::popupOpens() {
    disconnect(_withWindow);
    const auto* const item = _popup ? _popup->property("parent").value<QQuickItem*>() : nullptr;
    const QQuickWindow* const window = item ? item->window() : nullptr;
    if (!window)
        return;
    renewShortcuts(*window->contentItem());
    _withWindow = connect(window, &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible && _popup)
            QMetaObject::invokeMethod(_popup, "close");
    });
    const double margin = gap + CardMargin::of(*window);
    if (std::exchange(_margin, margin) != margin)
        Q_EMIT marginChanged();
}

} // namespace selvane
