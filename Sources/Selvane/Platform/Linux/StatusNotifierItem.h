#pragma once

#include "Selvane/Platform/Linux/ItemPicture.h"
#include "Selvane/Platform/StatusItemHost.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusServiceWatcher>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

class DBusMenu;
class LabelHosts;
class PictureHosts;
class StatusNotifierItemAdaptor;

/// The item as desktops with org.kde.StatusNotifierWatcher show it: an object on the session bus that panels
/// ask for pictures and words. Tells whether there is such a watcher, and shows the item while that is
/// wanted, registering again with every watcher that appears. The image is asked for pictures whenever a
/// panel asks, and only then; the item itself keeps none.
///
/// Main thread. Every call is asynchronous.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
public:
    /// `unknown` until the bus has answered for the first time.
    enum class Watcher { unknown, absent, withoutHost, withHost };

    /// `titles` outlives the item.
    StatusNotifierItem(const QDBusConnection& sessionBus, const TitleDrawing& titles);
    ~StatusNotifierItem() override;

    /// Panels may ask for the title at any time; only those that show it are told of changes. For panels that
    /// show no words but keep the shape of pictures it is drawn. However much changes, a panel is told once,
    /// and not of an image that resembles the one it was told of: that it asks for one costs four wake-ups.
    void setLook(ItemLook look);
    void setToolTip(const std::string& text);
    /// Panels read it with each new picture; they are not woken for the time that passes between two.
    void setAccessibleDescription(const std::string& text);
    void setMenu(const std::vector<StatusMenuEntry>& entries);
    /// Whether panels are to point the user to the item, which shows the same picture then.
    void setNeedsAttention(bool needsAttention);

    /// Puts the object on the bus and registers it, or takes it away.
    void setShown(bool shown);

    [[nodiscard]] Watcher watcher() const { return _watcher; }
    /// The name that the item has on the bus while it is shown.
    [[nodiscard]] QString serviceName() const;

    std::function<void()> onWatcherChange;
    /// Called with the coordinates that the panel sent, which not every panel counts from the same corner.
    std::function<void(ScreenPoint)> onActivate;
    std::function<void()> onSecondaryActivate;
    std::function<void(int)> onMenuEntry;

private Q_SLOTS:
    void hostsChanged();

private:
    friend class StatusNotifierItemAdaptor;

    void watcherAppeared();
    void askForHost();
    void tellLabel();
    void tellPicture();
    [[nodiscard]] bool panelsHaveImage() const;
    [[nodiscard]] bool showsTitle() const;
    void setWatcher(Watcher watcher);
    void registerWithWatcher();

    QDBusConnection _bus;
    QDBusServiceWatcher _nameWatcher;
    Watcher _watcher = Watcher::unknown;
    bool _isShown = false;
    ItemPicture _picture;
    /// What panels were told of last.
    std::shared_ptr<const TemplateImage> _toldImage;
    std::string _toolTip;
    std::string _accessibleDescription;
    bool _needsAttention = false;
    // A panel that was told of a change and hasn't asked yet will find the newest text when it does.
    bool _toolTipWasRead = true;
    int _unreadToolTips = 0;
    std::unique_ptr<LabelHosts> _labelHosts;
    /// Made when there are words for the first time.
    std::unique_ptr<PictureHosts> _pictureHosts;
    std::unique_ptr<DBusMenu> _menu;
    StatusNotifierItemAdaptor* _adaptor;
};

} // namespace selvane
