#include "Selvane/Platform/Linux/StatusNotifierItemAdaptor.h"

#include "Selvane/Platform/Linux/ActivationToken.h"
#include "Selvane/Platform/Linux/DBusMenu.h"
#include "Selvane/Platform/Linux/StatusNotifierItem.h"

#include <QtCore/QtEndian>
#include <QtDBus/QDBusMetaType>

namespace selvane {

namespace {

/// Twice the height of the usual icon in a panel.
constexpr int titledHeight = 48;

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(StatusNotifierItem* item)
    : QDBusAbstractAdaptor(item), _item(*item) {
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmapList>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

QString StatusNotifierItemAdaptor::status() const {
    return _item._needsAttention ? QStringLiteral("NeedsAttention") : QStringLiteral("Active");
}

NotifierPixmapList StatusNotifierItemAdaptor::iconPixmap() const {
    NotifierPixmapList pixmaps;
    const auto append = [&](const Picture& picture) {
        const auto count = static_cast<qsizetype>(picture.argb.size());
        QByteArray bytes(count * 4, Qt::Uninitialized);
        qToBigEndian<std::uint32_t>(picture.argb.data(), count, bytes.data());
        pixmaps.append({picture.width, picture.height, bytes});
    };
    if (_item.showsTitle()) {
        // One is enough for panels that make any size theirs, and they ask for it every second.
        append(_item._picture.drawTitled(titledHeight, _item._picture.look().ink));
        return pixmaps;
    }
    if (_item._picture.look().image == nullptr)
        return pixmaps;
    // The sizes of panels from the smallest to two pixels a point; panels scale the nearest one.
    for (const int side : {16, 22, 24, 32, 48, 64})
        append(_item._picture.drawImage(side, _item._picture.look().ink));
    return pixmaps;
}

NotifierPixmapList StatusNotifierItemAdaptor::attentionIconPixmap() const {
    // Many panels ask for all properties at once, so pictures that they don't need would be drawn each time.
    return _item._needsAttention ? iconPixmap() : NotifierPixmapList();
}

QString StatusNotifierItemAdaptor::iconAccessibleDescription() const {
    return QString::fromStdString(_item._accessibleDescription);
}

NotifierToolTip StatusNotifierItemAdaptor::toolTip() const {
    _item._toolTipWasRead = true;
    return {{}, {}, QString::fromStdString(_item._toolTip), {}};
}

QDBusObjectPath StatusNotifierItemAdaptor::menu() const {
    // A panel that is given the path of an empty menu shows nothing and doesn't call ContextMenu either.
    const bool hasMenu = !_item._menu->entries().empty();
    return QDBusObjectPath(hasMenu ? DBusMenu::path() : QStringLiteral("/NO_DBUSMENU"));
}

QString StatusNotifierItemAdaptor::label() const {
    return QString::fromStdString(_item._picture.look().title);
}

QString StatusNotifierItemAdaptor::labelGuide() const {
    return _item._picture.look().title.empty() ? QString() : QStringLiteral("00:00");
}

void StatusNotifierItemAdaptor::Activate(int x, int y) {
    if (_item.onActivate)
        _item.onActivate({x, y});
    ActivationToken::drop();
}

void StatusNotifierItemAdaptor::SecondaryActivate(int, int) {
    if (_item.onSecondaryActivate)
        _item.onSecondaryActivate();
    ActivationToken::drop();
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y) {
    // Panels that can show the menu do so themselves; to the others a right click is a click.
    Activate(x, y);
}

void StatusNotifierItemAdaptor::Scroll(int, const QString&) {}

void StatusNotifierItemAdaptor::ProvideXdgActivationToken(const QString& token) {
    ActivationToken::leave(token.toStdString());
}

} // namespace selvane
