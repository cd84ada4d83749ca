#include "Selvane/Platform/Linux/StatusNotifierItem.h"

#include "Selvane/Platform/Linux/DBusCall.h"
#include "Selvane/Platform/Linux/DBusMenu.h"
#include "Selvane/Platform/Linux/LabelHosts.h"
#include "Selvane/Platform/Linux/PictureHosts.h"
#include "Selvane/Platform/Linux/StatusNotifierItemAdaptor.h"

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>

#include <utility>

namespace selvane {

namespace {

const auto watcherName = QLatin1String("org.kde.StatusNotifierWatcher");
const auto watcherPath = QLatin1String("/StatusNotifierWatcher");
const auto itemPath = QLatin1String("/StatusNotifierItem");
const auto busName = QLatin1String("org.freedesktop.DBus");
const auto busPath = QLatin1String("/org/freedesktop/DBus");

/// A panel that lost a message hears of the tooltip again after this many changes.
constexpr int unreadToolTipsAtMost = 30;

QDBusMessage busCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(busName, busPath, busName, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage watcherCall(const QString& interface, const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(watcherName, watcherPath, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& sessionBus, const TitleDrawing& titles)
    : _bus(sessionBus),
      _nameWatcher(watcherName, sessionBus, QDBusServiceWatcher::WatchForOwnerChange),
      _picture(titles),
      // Asked for before the watcher, so that the answer is there when the item is first shown.
      _labelHosts(std::make_unique<LabelHosts>(sessionBus)),
      _menu(std::make_unique<DBusMenu>(sessionBus)),
      _adaptor(new StatusNotifierItemAdaptor(this)) {
    _menu->onEntry = [this](int id) {
        if (onMenuEntry)
            onMenuEntry(id);
    };
    _labelHosts->onAppear = [this] { tellLabel(); };
    if (!_bus.isConnected()) {
        _watcher = Watcher::absent;
        return;
    }
    connect(&_nameWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                if (owner.isEmpty())
                    setWatcher(Watcher::absent);
                else
                    watcherAppeared();
            });
    // Signals of the watcher are taken from any sender: naming it would make Qt wait for the bus's answer.
    for (const QString& name :
         {QStringLiteral("StatusNotifierHostRegistered"), QStringLiteral("StatusNotifierHostUnregistered")})
        _bus.connect(QString(), watcherPath, watcherName, name, this, SLOT(hostsChanged()));
    callAsync(_bus, busCall(QStringLiteral("NameHasOwner"), {QString(watcherName)}), this,
              [this](const QDBusMessage& reply) {
                  if (_watcher != Watcher::unknown)
                      return;
                  if (reply.arguments().value(0).toBool())
                      watcherAppeared();
                  else
                      setWatcher(Watcher::absent);
              });
}

StatusNotifierItem::~StatusNotifierItem() {
    setShown(false);
}

QString StatusNotifierItem::serviceName() const {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
}

void StatusNotifierItem::setLook(ItemLook look) {
    const ItemLook before = _picture.look();
    if (before == look)
        return;
    const bool isNewInk = before.ink != look.ink;
    if (!_pictureHosts && !look.title.empty()) {
        _pictureHosts = std::make_unique<PictureHosts>(_bus);
        _pictureHosts->onChange = [this] { tellPicture(); };
    }
    _picture.setLook(std::move(look));
    if (before.title != _picture.look().title)
        tellLabel();
    if (isNewInk || !panelsHaveImage() || (_pictureHosts && _pictureHosts->keepShape()))
        tellPicture();
}

bool StatusNotifierItem::panelsHaveImage() const {
    const auto& image = _picture.look().image;
    return image == _toldImage || (image && _toldImage && image->resembles(*_toldImage));
}

bool StatusNotifierItem::showsTitle() const {
    return !_picture.look().title.empty() && _pictureHosts && _pictureHosts->keepShape();
}

void StatusNotifierItem::tellPicture() {
    if (!_isShown)
        return;
    _toldImage = _picture.look().image;
    Q_EMIT _adaptor->NewIcon();
    if (_needsAttention)
        Q_EMIT _adaptor->NewAttentionIcon();
}

void StatusNotifierItem::tellLabel() {
    if (_isShown && _labelHosts->arePresent())
        Q_EMIT _adaptor->XAyatanaNewLabel(_adaptor->label(), _adaptor->labelGuide());
}

void StatusNotifierItem::setToolTip(const std::string& text) {
    if (_toolTip == text)
        return;
    _toolTip = text;
    if (!_isShown)
        return;
    if (!_toolTipWasRead && ++_unreadToolTips < unreadToolTipsAtMost)
        return;
    _toolTipWasRead = false;
    _unreadToolTips = 0;
    Q_EMIT _adaptor->NewToolTip();
}

void StatusNotifierItem::setAccessibleDescription(const std::string& text) {
    // There is no signal for it: panels read it together with the icon.
    _accessibleDescription = text;
}

void StatusNotifierItem::setMenu(const std::vector<StatusMenuEntry>& entries) {
    const bool hadMenu = !_menu->entries().empty();
    _menu->setEntries(entries);
    if (_isShown && hadMenu == entries.empty())
        Q_EMIT _adaptor->NewMenu();
}

void StatusNotifierItem::setNeedsAttention(bool needsAttention) {
    if (_needsAttention == needsAttention)
        return;
    _needsAttention = needsAttention;
    if (!_isShown)
        return;
    // The picture first: a panel that hears of the state and has no picture for it shows none.
    Q_EMIT _adaptor->NewAttentionIcon();
    Q_EMIT _adaptor->NewStatus(_adaptor->status());
}

void StatusNotifierItem::setShown(bool shown) {
    if (_isShown == shown || !_bus.isConnected())
        return;
    _isShown = shown;
    if (shown && _pictureHosts)
        _pictureHosts->ask();
    _menu->setPublished(shown);
    if (!shown) {
        _bus.send(busCall(QStringLiteral("ReleaseName"), {serviceName()}));
        _bus.unregisterObject(itemPath);
        return;
    }
    _toolTipWasRead = true;
    // Who finds the item asks for everything.
    _toldImage = _picture.look().image;
    _bus.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
    constexpr uint doNotQueue = 4;
    // The bus works in order: whoever asks the watcher for the item afterwards finds its name.
    _bus.send(busCall(QStringLiteral("RequestName"), {serviceName(), doNotQueue}));
    registerWithWatcher();
}

void StatusNotifierItem::hostsChanged() {
    if (_pictureHosts)
        _pictureHosts->ask();
    if (_watcher == Watcher::withHost || _watcher == Watcher::withoutHost)
        askForHost();
}

void StatusNotifierItem::watcherAppeared() {
    // Most watchers appear together with their panel, and say so only a moment later.
    const bool wasShown = _isShown;
    setWatcher(Watcher::withHost);
    if (_pictureHosts)
        _pictureHosts->ask();
    if (wasShown)
        registerWithWatcher();
    askForHost();
}

void StatusNotifierItem::askForHost() {
    const QDBusMessage question =
        watcherCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                    {QString(watcherName), QStringLiteral("IsStatusNotifierHostRegistered")});
    callAsync(_bus, question, this, [this](const QDBusMessage& reply) {
        const bool watcherStays = _watcher == Watcher::withHost || _watcher == Watcher::withoutHost;
        // A watcher that doesn't know the property is taken for a panel.
        if (!watcherStays || reply.type() != QDBusMessage::ReplyMessage)
            return;
        const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
        setWatcher(value.toBool() ? Watcher::withHost : Watcher::withoutHost);
    });
}

void StatusNotifierItem::setWatcher(Watcher watcher) {
    if (std::exchange(_watcher, watcher) != watcher && onWatcherChange)
        onWatcherChange();
}

void StatusNotifierItem::registerWithWatcher() {
    const bool watcherRuns = _watcher == Watcher::withHost || _watcher == Watcher::withoutHost;
    if (!_isShown || !watcherRuns)
        return;
    QDBusMessage registration =
        watcherCall(watcherName, QStringLiteral("RegisterStatusNotifierItem"), {serviceName()});
    _bus.send(registration);
}

} // namespace selvane
