#pragma once

#include "Selvane/Platform/Appearance.h"
#include "Selvane/Platform/Monitor.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/Platform/TitleDrawing.h"
#include "SelvaneCore/Lifetime.h"

#include <QtDBus/QDBusConnection>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

class StatusNotifierItem;
class XEmbedTray;

/// The status item on a freedesktop desktop. Where a StatusNotifierWatcher runs the item is an object on the
/// bus; where none runs, or one that no panel listens to, it is a window in the tray of the X11 screen; never
/// both at once. Panels may come, go and change for as long as the program runs.
///
/// Few panels show words beside an item and none tells whether it does, so an item without an image might not
/// be seen at all. In the absence of an image the last one stays, unless the words are sure to be seen
/// because they are drawn: that is so in trays that grant the width and in panels known to keep a picture's
/// shape.
class LinuxStatusItem final : public StatusItemHost {
public:
    struct Desktop {
        /// True in an X11 session: the item may be a window in a tray, and clicks have coordinates that mean
        /// something.
        bool isX11 = false;
        /// As in the variable DISPLAY; empty for the value of that variable.
        std::string displayName;
        /// GNOME's top bar is dark in both of its colour schemes.
        bool hasDarkPanel = false;
        /// The screens of an X11 session.
        std::function<std::vector<Monitor>()> monitors = [] { return std::vector<Monitor>(); };
        /// Where the pointer is in an X11 session, if that is known.
        std::function<std::optional<ScreenPoint>()> pointer = [] { return std::optional<ScreenPoint>(); };

        /// From the QGuiApplication and XDG_CURRENT_DESKTOP.
        static Desktop current();
    };

    LinuxStatusItem(const QDBusConnection& sessionBus, Scheduler& scheduler, Appearance& appearance,
                    const TitleDrawing& titles, Desktop desktop = Desktop::current());
    ~LinuxStatusItem() override;

    void setContent(const StatusItemContent& content) override;
    void setAccessibilityLabel(const std::string& label) override;
    void setTooltip(const std::string& text) override;
    void setMenu(const std::vector<StatusMenuEntry>& entries) override;
    /// Does nothing: no panel can show an item pressed.
    void setHighlighted(bool highlighted) override;

    /// Whether the user is to be pointed to the item, until the item is clicked. Panels do so in their own
    /// way; in a tray the item shows itself as a badge.
    void setNeedsAttention(bool needsAttention);

    /// In a tray the place of the window; otherwise where the item was last clicked, if that is known.
    [[nodiscard]] StatusItemAnchor anchor() const override;

private:
    enum class Place { nowhere, watcher, tray };

    void choosePlace();
    void moveTo(Place place);
    void updateLook();
    void pointerEntered();
    void showTooltip();
    void activated(ScreenPoint told);

    Scheduler& _scheduler;
    Appearance& _appearance;
    const TitleDrawing& _titles;
    Desktop _desktop;
    StatusItemContent _content;
    /// The last image that the content had.
    std::shared_ptr<const TemplateImage> _image;
    std::string _tooltip;
    bool _needsAttention = false;
    std::optional<ScreenPoint> _lastPointer;
    Place _place = Place::nowhere;
    bool _hostIsMissing = false;
    Subscription _patience;
    /// Runs while the pointer rests on the item in a tray.
    Subscription _hover;
    std::unique_ptr<StatusNotifierItem> _notifierItem;
    // Made only when there may be need of it: it costs a connection to the X server.
    std::unique_ptr<XEmbedTray> _tray;
    Subscription _appearanceChange;
    Lifetime _lifetime;
};

} // namespace selvane
