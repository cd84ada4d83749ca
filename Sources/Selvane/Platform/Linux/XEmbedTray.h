#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <optional>

namespace selvane {

/// The item as panels without org.kde.StatusNotifierWatcher show it: a small window of ours inside the window
/// that owns the selection _NET_SYSTEM_TRAY_Sn of an X11 screen. Has an X connection of its own. Such a tray
/// shows no words: its item has neither a label nor a tooltip, and its window is named "Selvane".
///
/// Main thread. A lost X connection means that there is no tray any more.
class XEmbedTray final : public QObject {
    Q_OBJECT
public:
    /// `displayName` as in the variable DISPLAY; empty for the value of that variable.
    explicit XEmbedTray(const std::string& displayName = {});
    ~XEmbedTray() override;

    /// Whether a tray runs. Trays that start later are noticed.
    [[nodiscard]] bool isAvailable() const;

    /// `fallbackInk` is used where the colour of the tray can't be told.
    void setImage(std::shared_ptr<const TemplateImage> image, Ink fallbackInk);

    /// Puts the window into the tray, again with each new tray, or takes it away.
    void setShown(bool shown);

    /// The area of the window in pixels of the X11 screen, if it lies in a tray.
    [[nodiscard]] std::optional<ScreenRect> geometry() const;

    std::function<void()> onAvailabilityChange;
    /// The left or the right button was pressed on the item.
    std::function<void(const StatusItemAnchor&)> onActivate;
    /// The middle button was pressed on the item.
    std::function<void()> onSecondaryActivate;

private:
    class Connection;
    std::unique_ptr<Connection> _connection;
};

} // namespace selvane
