#include "Selvane/Platform/Linux/LinuxStatusItem.h"

#include "Selvane/Platform/Linux/CurrentDesktop.h"
#include "Selvane/Platform/Linux/StatusNotifierItem.h"
#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XEmbedTray.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace selvane {

namespace {

/// How long a watcher without a panel is waited for before a tray is preferred: panels that restart need one
/// to two seconds.
constexpr Seconds hostPatience{3};
/// How long the pointer rests on the item in a tray before its tooltip comes.
constexpr Seconds hoverDelay{0.7};
/// How high the words of that tooltip are, in units of windows.
constexpr double tooltipHeight = 16;
/// The most pixels that one unit of a panel has on either side.
constexpr int largestScale = 4;
/// How many pixels the pointer may go between a click and the panel's word of it.
constexpr std::int64_t farthestMove = 24;

/// The place of a click in pixels. Where everything is shown larger, some panels, such as that of Xfce, tell
/// it in units of several pixels; the pointer gives that away.
ScreenPoint inPixels(ScreenPoint told, ScreenPoint pointer) {
    int scale = 1;
    std::int64_t nearest = farthestMove + 1;
    for (int each = 1; each <= largestScale; ++each) {
        const std::int64_t right = std::int64_t{told.x} * each - pointer.x;
        const std::int64_t below = std::int64_t{told.y} * each - pointer.y;
        const std::int64_t distance = std::max(std::abs(right), std::abs(below));
        if (distance < nearest) {
            nearest = distance;
            scale = each;
        }
    }
    return {told.x * scale, told.y * scale};
}

} // namespace

LinuxStatusItem::Desktop LinuxStatusItem::Desktop::current() {
    Desktop desktop;
    desktop.isX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    const auto names = currentDesktops();
    desktop.hasDarkPanel = std::ranges::find(names, "GNOME") != names.end();
    desktop.monitors = [] {
        std::vector<Monitor> monitors;
        for (const QScreen* const screen : QGuiApplication::screens())
            monitors.push_back(Monitor::of(*screen));
        return monitors;
    };
    desktop.pointer = []() -> std::optional<ScreenPoint> {
        xcb_connection_t* const connection = X11Windows::connection();
        return connection ? X11Windows::pointer(connection) : std::nullopt;
    };
    return desktop;
}

LinuxStatusItem::LinuxStatusItem(const QDBusConnection& sessionBus, Scheduler& scheduler,
                                 Appearance& appearance, const TitleDrawing& titles, Desktop desktop)
    : _scheduler(scheduler),
      _appearance(appearance),
      _titles(titles),
      _desktop(std::move(desktop)),
      _notifierItem(std::make_unique<StatusNotifierItem>(sessionBus, titles)) {
    _notifierItem->onWatcherChange = [this] { choosePlace(); };
    _notifierItem->onActivate = [this](ScreenPoint point) { activated(point); };
    _notifierItem->onSecondaryActivate = [this] {
        if (onSecondaryActivate)
            onSecondaryActivate();
    };
    _notifierItem->onMenuEntry = [this](int id) {
        if (onMenuEntry)
            onMenuEntry(id);
    };
    _appearanceChange = _appearance.changed.subscribe([this] { updateLook(); });
    // Whoever makes the item sets its callbacks and its content first.
    _scheduler.post(_lifetime.guard([this] { choosePlace(); }));
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::setContent(const StatusItemContent& content) {
    if (_content == content)
        return;
    _content = content;
    if (const auto& image = _content.image ? _content.image : _content.substitute)
        _image = image;
    updateLook();
}

void LinuxStatusItem::setAccessibilityLabel(const std::string& label) {
    _notifierItem->setAccessibleDescription(label);
}

void LinuxStatusItem::setTooltip(const std::string& text) {
    _notifierItem->setToolTip(text);
    _tooltip = text;
    // Unlike the label it doesn't change every second, which would wake the tray.
    if (_tray != nullptr)
        _tray->setName(text);
}

void LinuxStatusItem::setMenu(const std::vector<StatusMenuEntry>& entries) {
    _notifierItem->setMenu(entries);
}

void LinuxStatusItem::setHighlighted(bool) {}

void LinuxStatusItem::setNeedsAttention(bool needsAttention) {
    _needsAttention = needsAttention;
    _notifierItem->setNeedsAttention(needsAttention);
    if (_tray != nullptr)
        _tray->setNeedsAttention(needsAttention);
}

StatusItemAnchor LinuxStatusItem::anchor() const {
    switch (_place) {
    case Place::nowhere:
        return {};
    case Place::watcher:
        return {std::nullopt, _lastPointer};
    case Place::tray:
        return {_tray->geometry(), std::nullopt};
    }
    return {};
}

void LinuxStatusItem::choosePlace() {
    using Watcher = StatusNotifierItem::Watcher;
    const Watcher watcher = _notifierItem->watcher();
    if (watcher == Watcher::unknown)
        return;

    // 1. A watcher with a panel has the item, and nobody needs the tray.
    if (watcher == Watcher::withHost) {
        _patience.end();
        _hostIsMissing = false;
        moveTo(Place::watcher);
        _hover.end();
        _tray.reset();
        return;
    }

    // 2. A watcher without a panel keeps the item while its panel may be restarting.
    if (watcher == Watcher::withoutHost && !_hostIsMissing) {
        moveTo(Place::watcher);
        if (!_patience && _desktop.isX11) {
            _patience = _scheduler.after(hostPatience, [this] {
                _hostIsMissing = true;
                choosePlace();
            });
        }
        return;
    }

    // 3. Otherwise the item goes into a tray, if there is one or as soon as there is one.
    _patience.end();
    _hostIsMissing = watcher == Watcher::withoutHost;
    if (_desktop.isX11 && _tray == nullptr) {
        _tray = std::make_unique<XEmbedTray>(_titles, _desktop.displayName);
        _tray->onAvailabilityChange = [this] { choosePlace(); };
        _tray->onActivate = [this](const StatusItemAnchor& anchor) {
            setNeedsAttention(false);
            if (onActivate)
                onActivate(anchor);
        };
        _tray->onSecondaryActivate = [this] {
            if (onSecondaryActivate)
                onSecondaryActivate();
        };
        _tray->onPointerEnter = [this] { pointerEntered(); };
        _tray->onPointerLeave = [this] { _hover.end(); };
        _tray->setName(_tooltip);
        _tray->setNeedsAttention(_needsAttention);
        updateLook();
    }
    if (_tray != nullptr && _tray->isAvailable())
        moveTo(Place::tray);
    else
        moveTo(watcher == Watcher::withoutHost ? Place::watcher : Place::nowhere);
}

void LinuxStatusItem::moveTo(Place place) {
    if (_place == place)
        return;
    _place = place;
    _lastPointer.reset();
    // First out of the old place, then into the new one.
    if (_place != Place::tray && _tray != nullptr)
        _tray->setShown(false);
    _notifierItem->setShown(_place == Place::watcher);
    if (_place == Place::tray)
        _tray->setShown(true);
}

void LinuxStatusItem::updateLook() {
    const Ink ink = _appearance.isDark() ? Ink::light : Ink::dark;
    ItemLook look{_image, _desktop.hasDarkPanel ? Ink::light : ink, _content.title.value_or(std::string()),
                  _content.image != nullptr ? ItemLook::Company::image : ItemLook::Company::nothing};
    _notifierItem->setLook(look);
    if (_tray == nullptr)
        return;
    look.ink = ink;
    _tray->setLook(std::move(look));
}

void LinuxStatusItem::pointerEntered() {
    _hover = _scheduler.after(hoverDelay, [this] { showTooltip(); });
}

void LinuxStatusItem::showTooltip() {
    const auto item = _tray->geometry();
    if (!item)
        return;
    const auto monitors = _desktop.monitors();
    const auto monitor =
        std::ranges::find_if(monitors, [&](const Monitor& candidate) { return candidate.holds(*item); });
    const bool isKnown = monitor != monitors.end();
    const double height = tooltipHeight * (isKnown ? monitor->pixelRatio : 1);
    _tray->showTooltip(_tooltip, static_cast<int>(std::lround(height)),
                       isKnown ? std::optional(monitor->pixels) : std::nullopt);
}

void LinuxStatusItem::activated(ScreenPoint told) {
    const auto pointer = _desktop.isX11 ? _desktop.pointer() : std::nullopt;
    const ScreenPoint point = pointer ? inPixels(told, *pointer) : told;
    const auto isThere = [point](const Monitor& monitor) { return monitor.contains(point); };
    // Panels under Wayland count from a corner of their own. What was chosen without the pointer is said to
    // be in the screen's corner.
    const bool isPlace = point != ScreenPoint{0, 0} || pointer == point;
    const bool isKnown = _desktop.isX11 && isPlace && std::ranges::any_of(_desktop.monitors(), isThere);
    _lastPointer = isKnown ? std::optional(point) : std::nullopt;
    setNeedsAttention(false);
    if (onActivate)
        onActivate({std::nullopt, _lastPointer});
}

} // namespace selvane
