#include "Selvane/Platform/Linux/DesktopAppearance.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>

#include <xcb/xcb.h>

#include <string>
#include <utility>

namespace selvane {

namespace {

DesktopWishes::Palette currentPalette() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return DesktopWishes::Palette::light;
    const QPalette palette = QGuiApplication::palette();
    const bool isDark =
        palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    return isDark ? DesktopWishes::Palette::dark : DesktopWishes::Palette::light;
}

/// The selection that the program which composites an X11 screen owns.
xcb_atom_t compositorSelection(xcb_connection_t* connection) {
    return X11Windows::atom(connection, "_NET_WM_CM_S" + std::to_string(X11Windows::screenNumber()));
}

bool isOwned(xcb_connection_t* connection, xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

DesktopAppearance::DesktopAppearance(const QDBusConnection& sessionBus, std::unique_ptr<XSettings> xsettings)
    : _portal(sessionBus, DesktopWishes::portalGroups()), _xsettings(std::move(xsettings)) {
    _portal.onUpdate = [this] { update(); };
    if (_xsettings != nullptr)
        _xsettings->onChange = [this] { update(); };
    if (QCoreApplication::instance() != nullptr)
        QCoreApplication::instance()->installEventFilter(this);
    _wishes = currentWishes();
}

DesktopAppearance::~DesktopAppearance() = default;

bool DesktopAppearance::isComposited() const {
    if (xcb_connection_t* const connection = X11Windows::connection()) {
        // Each question waits for the server, and this is asked whenever a window opens.
        if (_compositorSelection == XCB_ATOM_NONE)
            _compositorSelection = compositorSelection(connection);
        return isOwned(connection, _compositorSelection);
    }
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance())
        QMetaObject::invokeMethod(this, &DesktopAppearance::update, Qt::QueuedConnection);
    return false;
}

DesktopWishes DesktopAppearance::currentWishes() const {
    return DesktopWishes::from(_portal.values(), _xsettings ? _xsettings->values() : XSettingValues(),
                               currentPalette());
}

void DesktopAppearance::update() {
    const DesktopWishes wishes = currentWishes();
    if (std::exchange(_wishes, wishes) != wishes)
        changed.emit();
}

} // namespace selvane
