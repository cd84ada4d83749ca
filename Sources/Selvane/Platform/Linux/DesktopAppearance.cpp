#include "Selvane/Platform/Linux/DesktopAppearance.h"

#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>

#include <xcb/xcb.h>

#include <string_view>

namespace selvane {

namespace {

const auto portalName = QLatin1String("org.freedesktop.portal.Desktop");
const auto portalPath = QLatin1String("/org/freedesktop/portal/desktop");
const auto settingsInterface = QLatin1String("org.freedesktop.portal.Settings");
const auto appearanceGroup = QLatin1String("org.freedesktop.appearance");
const auto colorSchemeKey = QLatin1String("color-scheme");

bool paletteIsDark() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

/// The program that composites an X11 screen owns a selection of its own.
bool hasCompositor(xcb_connection_t* connection) {
    constexpr std::string_view name = "_NET_WM_CM_S0";
    const XcbReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, name.size(), name.data()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

DesktopAppearance::DesktopAppearance(const QDBusConnection& sessionBus)
    : _bus(sessionBus), _portal(portalName, sessionBus, QDBusServiceWatcher::WatchForOwnerChange) {
    _isDark = paletteIsDark();
    if (QCoreApplication::instance() != nullptr)
        QCoreApplication::instance()->installEventFilter(this);
    if (!_bus.isConnected())
        return;
    connect(&_portal, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::readPreference);
    // Without it Qt looks for the type of the slot before it has made its own types known, and finds no slot.
    qRegisterMetaType<QDBusVariant>();
    // Of a portal that went away the last word stands: one that crashed is the same desktop a moment later.
    _bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    readPreference();
}

DesktopAppearance::~DesktopAppearance() = default;

bool DesktopAppearance::isComposited() const {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    if (auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return hasCompositor(x11->connection());
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance())
        QMetaObject::invokeMethod(this, &DesktopAppearance::update, Qt::QueuedConnection);
    return false;
}

void DesktopAppearance::readPreference() {
    auto message =
        QDBusMessage::createMethodCall(portalName, portalPath, settingsInterface, QStringLiteral("Read"));
    message << QString(appearanceGroup) << QString(colorSchemeKey);
    auto* watcher = new QDBusPendingCallWatcher(_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            setPreference(preferenceIn(reply.value().variant()));
    });
}

void DesktopAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == appearanceGroup && key == colorSchemeKey)
        setPreference(preferenceIn(value.variant()));
}

DesktopAppearance::Preference DesktopAppearance::preferenceIn(const QVariant& value) {
    // `Read` wraps its answer twice.
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    switch (inner.toUInt()) {
    case 1:
        return Preference::dark;
    case 2:
        return Preference::light;
    default:
        return Preference::none;
    }
}

void DesktopAppearance::setPreference(Preference preference) {
    _preference = preference;
    update();
}

void DesktopAppearance::update() {
    const bool isDark = _preference == Preference::none ? paletteIsDark() : _preference == Preference::dark;
    if (isDark == _isDark)
        return;
    _isDark = isDark;
    changed.emit();
}

} // namespace selvane
