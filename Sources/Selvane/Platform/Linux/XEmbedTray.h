#pragma once

#include "Selvane/Platform/Linux/ItemPicture.h"
#include "Selvane/Platform/StatusItemHost.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <optional>

namespace selvane {

/// The item as panels without org.kde.StatusNotifierWatcher show it: a small window of ours inside the window
/// that owns the selection _NET_SYSTEM_TRAY_Sn of an X11 screen. Has an X connection of its own. Such a tray
/// shows no words by itself. The window asks for the width that a title needs, and draws the title if the
/// tray grants it; a tooltip is another window of ours.
///
/// Main thread. A lost X connection means that there is no tray any more.
class XEmbedTray final : public QObject {
    Q_OBJECT
public:
    /// `displayName` as in the variable DISPLAY; empty for the value of that variable.
    /// `titles` outlives the tray.
    explicit XEmbedTray(const TitleDrawing& titles, const std::string& displayName = {});
    ~XEmbedTray() override;

    /// Whether a tray runs. Trays that start later are noticed.
    [[nodiscard]] bool isAvailable() const;

    /// The title is shown where the tray has the room for it. The look's ink is used where the colour of the
    /// tray can't be told. A new title alone is drawn without waiting for the server.
    void setLook(ItemLook look);
    /// Whether the item is to catch the eye: it is a badge of its ink then, out of which its drawing is cut.
    void setNeedsAttention(bool needsAttention);
    /// What the window is called as long as it lies in the tray, for whatever reads the screen. At first it
    /// has the program's own name, by which trays remember where their user put it.
    void setName(const std::string& name);
    /// Shows these words beside the item, `height` pixels high, until the pointer leaves or a button is
    /// pressed. `monitor` is where the item lies, in pixels; without it that is all of the X11 screen.
    void showTooltip(const std::string& words, int height, const std::optional<ScreenRect>& monitor);

    /// Puts the window into the tray, again with each new tray, or takes it away.
    void setShown(bool shown);

    /// The area of the window in pixels of the X11 screen, if it lies in a tray.
    [[nodiscard]] std::optional<ScreenRect> geometry() const;

    std::function<void()> onAvailabilityChange;
    /// The left or the right button was pressed on the item.
    std::function<void(const StatusItemAnchor&)> onActivate;
    /// The middle button was pressed on the item.
    std::function<void()> onSecondaryActivate;
    /// The pointer came to rest on the item, or it left or was used.
    std::function<void()> onPointerEnter;
    std::function<void()> onPointerLeave;

private:
    class Connection;
    std::unique_ptr<Connection> _connection;
};

} // namespace selvane
