#include "Selvane/Platform/Linux/XEmbedTray.h"

#include "Selvane/Platform/Linux/Badge.h"
#include "Selvane/Platform/Linux/TooltipPlace.h"
#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtCore/QSocketNotifier>

#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace selvane {

namespace {

/// Where a visual keeps one of its colours within a pixel.
struct Channel {
    explicit Channel(std::uint32_t mask)
        : shift(mask == 0 ? 0 : std::countr_zero(mask)), width(std::popcount(mask)) {}

    [[nodiscard]] std::uint32_t put(std::uint32_t value) const {
        return width == 0 ? 0 : (width < 8 ? value >> (8 - width) : value << (width - 8)) << shift;
    }
    [[nodiscard]] std::uint32_t take(std::uint32_t pixel) const {
        if (width == 0)
            return 0;
        const std::uint32_t value = (pixel >> shift) & ((1U << width) - 1U);
        return width < 8 ? value << (8 - width) : value >> (width - 8);
    }

    int shift;
    int width;
};

/// One of a screen's ways to keep colours, and how many bits a pixel has in it.
struct Visual {
    const xcb_visualtype_t* type = nullptr;
    int depth = 0;
};

/// None of both if the screen doesn't have it.
Visual visual(const xcb_screen_t& screen, xcb_visualid_t id) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == id)
                return {visuals.data, depths.data->depth};
        }
    }
    return {};
}

std::uint32_t over(std::uint32_t ground, std::uint32_t ink, std::uint32_t alpha) {
    return (ink * alpha + ground * (255 - alpha) + 127) / 255;
}

/// The brightness of a colour from 0 to 255 by the weights of ITU-R BT.601.
std::uint32_t luma(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return (red * 299 + green * 587 + blue * 114) / 1000;
}

/// XCB_NONE and XCB_ATOM_NONE as what they stand for: a window or an atom that there isn't.
constexpr std::uint32_t nothing = XCB_NONE;
constexpr std::uint32_t dockRequest = 0;
constexpr std::uint32_t embedIsMapped = 1;
/// The flag PMinSize of WM_NORMAL_HINTS.
constexpr std::uint32_t hintMinimumSize = 1U << 4U;
constexpr std::uint16_t smallestSide = 22;
/// Between the words of a tooltip and its edge.
constexpr int tooltipPadding = 6;

} // namespace

class XEmbedTray::Connection {
public:
    Connection(XEmbedTray& owner, const TitleDrawing& titles, const std::string& displayName)
        : _owner(owner), _titles(titles), _picture(titles) {
        int screenNumber = 0;
        _xcb = xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
        if (xcb_connection_has_error(_xcb) != 0)
            return;
        _screen = X11Windows::screen(_xcb, screenNumber);
        if (!_screen)
            return;
        internAtoms(screenNumber);
        // The root window tells of new trays by the message MANAGER.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(_xcb, _screen->root, XCB_CW_EVENT_MASK, &mask);
        _notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(_xcb), QSocketNotifier::Read);
        QObject::connect(_notifier.get(), &QSocketNotifier::activated, &_owner, [this] { handleEvents(); });
        findTray();
        handleLater();
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ~Connection() {
        _notifier.reset();
        xcb_disconnect(_xcb);
    }

    [[nodiscard]] bool isAvailable() const { return _tray != XCB_NONE; }

    void setLook(ItemLook look) {
        const ItemLook& before = _picture.look();
        if (before == look)
            return;
        const bool isNewImage = before.image != look.image || before.ink != look.ink;
        _picture.setLook(std::move(look));
        if (_window != XCB_NONE)
            wishSize();
        draw(isNewImage ? Ground::read : Ground::known);
    }

    void setNeedsAttention(bool needsAttention) {
        if (std::exchange(_needsAttention, needsAttention) != needsAttention)
            draw(Ground::known);
    }

    void setName(const std::string& name) {
        if (std::exchange(_name, name) != name && _isMapped)
            tellName(_name);
    }

    void showTooltip(const std::string& words, int height, const std::optional<ScreenRect>& monitor) {
        hideTooltip();
        const auto item = geometry();
        if (!item || words.empty())
            return;
        const Picture picture = _titles.draw(words, height, Ink::light);
        const ScreenRect whole{0, 0, _screen->width_in_pixels, _screen->height_in_pixels};
        openTooltip(*item, picture, monitor.value_or(whole));
    }

    void setShown(bool shown) {
        if (_isShown == shown)
            return;
        _isShown = shown;
        if (shown)
            dock();
        else
            undock();
        handleLater();
    }

    [[nodiscard]] std::optional<ScreenRect> geometry() {
        if (_window == XCB_NONE || !_isMapped)
            return std::nullopt;
        const XcbReply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
            _xcb, xcb_translate_coordinates(_xcb, _window, _screen->root, 0, 0), nullptr));
        handleLater();
        if (corner == nullptr)
            return std::nullopt;
        return ScreenRect{corner->dst_x, corner->dst_y, _width, _height};
    }

private:
    enum Atom {
        manager,
        trayOpcode,
        trayVisual,
        trayColors,
        embedInfo,
        utf8String,
        netName,
        netProcess,
        netWindowType,
        netTooltip,
        atomCount
    };

    void internAtoms(int screenNumber) {
        const std::array<const char*, atomCount> names{"MANAGER",
                                                       "_NET_SYSTEM_TRAY_OPCODE",
                                                       "_NET_SYSTEM_TRAY_VISUAL",
                                                       "_NET_SYSTEM_TRAY_COLORS",
                                                       "_XEMBED_INFO",
                                                       "UTF8_STRING",
                                                       "_NET_WM_NAME",
                                                       "_NET_WM_PID",
                                                       "_NET_WM_WINDOW_TYPE",
                                                       "_NET_WM_WINDOW_TYPE_TOOLTIP"};
        std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
        for (std::size_t index = 0; index < names.size(); ++index)
            cookies[index] = internAtom(names[index]);
        const auto selection = internAtom("_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber));
        for (std::size_t index = 0; index < cookies.size(); ++index)
            _atoms[index] = atomOf(cookies[index]);
        _selection = atomOf(selection);
    }

    xcb_intern_atom_cookie_t internAtom(const std::string& name) const {
        return xcb_intern_atom(_xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    }

    xcb_atom_t atomOf(xcb_intern_atom_cookie_t cookie) const {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(_xcb, cookie, nullptr));
        return reply == nullptr ? nothing : reply->atom;
    }

    // Finding the tray

    void findTray() {
        // The grab makes sure that the tray still exists when its end is asked to be told.
        xcb_grab_server(_xcb);
        const XcbReply<xcb_get_selection_owner_reply_t> owner(
            xcb_get_selection_owner_reply(_xcb, xcb_get_selection_owner(_xcb, _selection), nullptr));
        const xcb_window_t tray = owner == nullptr ? nothing : owner->owner;
        if (tray != XCB_NONE) {
            const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(_xcb, tray, XCB_CW_EVENT_MASK, &mask);
        }
        xcb_ungrab_server(_xcb);
        xcb_flush(_xcb);
        setTray(tray);
    }

    void setTray(xcb_window_t tray) {
        if (_tray == tray)
            return;
        const bool wasAvailable = isAvailable();
        undock();
        _tray = tray;
        _trayInk = _tray == XCB_NONE ? std::nullopt : inkOfTray();
        if (_isShown)
            dock();
        if (wasAvailable != isAvailable() && _owner.onAvailabilityChange)
            _owner.onAvailabilityChange();
    }

    std::vector<std::uint32_t> trayProperty(Atom property, xcb_atom_t type, std::uint32_t count) const {
        return X11Windows::numbers(_xcb, xcb_get_property(_xcb, 0, _tray, _atoms[property], type, 0, count));
    }

    /// The tray's colour for symbols, where it has one, is red, green and blue of 16 bits each.
    std::optional<Ink> inkOfTray() const {
        const auto colors = trayProperty(trayColors, XCB_ATOM_CARDINAL, 3);
        if (colors.size() < 3)
            return std::nullopt;
        return luma(colors[0] >> 8U, colors[1] >> 8U, colors[2] >> 8U) >= 128 ? Ink::light : Ink::dark;
    }

    // The window

    void dock() {
        if (_tray == XCB_NONE || _window != XCB_NONE)
            return;
        chooseVisual();
        _window = xcb_generate_id(_xcb);
        _width = smallestSide;
        _height = smallestSide;
        const std::uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                     XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_ENTER_WINDOW |
                                     XCB_EVENT_MASK_LEAVE_WINDOW;
        if (_hasAlpha) {
            _colormap = xcb_generate_id(_xcb);
            xcb_create_colormap(_xcb, XCB_COLORMAP_ALLOC_NONE, _colormap, _screen->root, _visual->visual_id);
            const std::uint32_t values[] = {0, 0, events, _colormap};
            xcb_create_window(_xcb, 32, _window, _screen->root, 0, 0, _width, _height, 0,
                              XCB_WINDOW_CLASS_INPUT_OUTPUT, _visual->visual_id,
                              XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                              values);
        } else {
            // What the tray painted shines through between our pixels.
            const std::uint32_t values[] = {XCB_BACK_PIXMAP_PARENT_RELATIVE, events};
            xcb_create_window(_xcb, _screen->root_depth, _window, _screen->root, 0, 0, _width, _height, 0,
                              XCB_WINDOW_CLASS_INPUT_OUTPUT, _screen->root_visual,
                              XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values);
        }
        _context = xcb_generate_id(_xcb);
        xcb_create_gc(_xcb, _context, _window, 0, nullptr);
        setWindowProperties();

        xcb_client_message_event_t request{};
        request.response_type = XCB_CLIENT_MESSAGE;
        request.format = 32;
        request.window = _tray;
        request.type = _atoms[trayOpcode];
        request.data.data32[0] = XCB_CURRENT_TIME;
        request.data.data32[1] = dockRequest;
        request.data.data32[2] = _window;
        xcb_send_event(_xcb, 0, _tray, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&request));
        xcb_flush(_xcb);
    }

    void setWindowProperties() {
        const std::uint32_t info[] = {0, embedIsMapped};
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, _atoms[embedInfo], _atoms[embedInfo], 32, 2,
                            info);
        _wishedWidth = 0;
        wishSize();
        const std::string name = "Selvane";
        tellName(name);
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(name.size()), name.data());
        const std::string windowClass("selvane\0Selvane\0", 16);
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(windowClass.size()), windowClass.data());
        const auto process = static_cast<std::uint32_t>(getpid());
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, _atoms[netProcess], XCB_ATOM_CARDINAL, 32,
                            1, &process);
    }

    void tellName(const std::string& name) {
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, _atoms[netName], _atoms[utf8String], 8,
                            static_cast<std::uint32_t>(name.size()), name.data());
        xcb_flush(_xcb);
    }

    /// Trays that take a window's wish for its size would make it one pixel wide without this.
    void wishSize() {
        const int titledWidth = _picture.titledWidth(imageSide());
        // As much is left beside the drawing as above and below it.
        const int drawnWidth = titledWidth > 0 ? titledWidth : imageSide();
        const int width = std::max<int>(smallestSide, drawnWidth + _height - imageSide());
        if (std::exchange(_wishedWidth, width) == width)
            return;
        std::array<std::uint32_t, 18> sizeHints{};
        sizeHints[0] = hintMinimumSize;
        sizeHints[5] = static_cast<std::uint32_t>(width);
        sizeHints[6] = smallestSide;
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, XCB_ATOM_WM_NORMAL_HINTS,
                            XCB_ATOM_WM_SIZE_HINTS, 32, sizeHints.size(), sizeHints.data());
        xcb_flush(_xcb);
    }

    void undock() {
        if (_window == XCB_NONE)
            return;
        hideTooltip();
        xcb_free_gc(_xcb, _context);
        xcb_destroy_window(_xcb, _window);
        if (_hasAlpha)
            xcb_free_colormap(_xcb, _colormap);
        xcb_flush(_xcb);
        _window = XCB_NONE;
        _isMapped = false;
        _ground.clear();
    }

    void chooseVisual() {
        const auto wanted = trayProperty(trayVisual, XCB_ATOM_VISUALID, 1);
        const Visual ofTray = wanted.empty() ? Visual() : visual(*_screen, wanted.front());
        _hasAlpha = ofTray.depth == 32;
        _visual = _hasAlpha ? ofTray.type : visual(*_screen, _screen->root_visual).type;
    }

    // Drawing

    /// What the tray painted below the window is asked for when it may have changed, which the server tells,
    /// and now and then besides.
    enum class Ground { known, read };

    /// The image within a margin that other icons have too, unless the tray is low. The same whatever the
    /// item shows, so that the image doesn't change its size.
    [[nodiscard]] int imageSide() const {
        return std::min<int>(_height, std::max<int>(smallestSide, sideOnBadge()));
    }
    [[nodiscard]] int sideOnBadge() const { return _height - 2 * ((_height * 5 + 32) / 64); }

    void draw(Ground ground = Ground::read) {
        if (_window == XCB_NONE || !_isMapped || _visual == nullptr)
            return;
        const std::size_t count = std::size_t{_width} * _height;
        std::vector<std::uint32_t> pixels(count, 0);
        const std::uint8_t depth = _hasAlpha ? std::uint8_t{32} : _screen->root_depth;
        if (!_hasAlpha) {
            if (ground == Ground::read || _ground.size() != count)
                readGround(count);
            if (_ground.size() != count)
                return;
            pixels = _ground;
        }
        blend(pixels);
        exchangeOrder(pixels);
        xcb_put_image(_xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, _window, _context, _width, _height, 0, 0, 0, depth,
                      static_cast<std::uint32_t>(count * sizeof(std::uint32_t)),
                      reinterpret_cast<const std::uint8_t*>(pixels.data()));
        xcb_flush(_xcb);
    }

    /// Leaves the last ground where the server has none to give: it reads no window that lies partly beside
    /// the screen, as in a panel that hides itself, and tells when the window comes back. Screens of fewer
    /// than 24 bits pack their pixels in ways of their own; they show the tray's ground only.
    void readGround(std::size_t count) {
        xcb_clear_area(_xcb, 0, _window, 0, 0, 0, 0);
        const XcbReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            _xcb, xcb_get_image(_xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, _window, 0, 0, _width, _height, ~0U),
            nullptr));
        handleLater();
        if (image == nullptr ||
            static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < count * sizeof(std::uint32_t))
            return;
        const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
        _ground.assign(data, data + count);
        exchangeOrder(_ground);
    }

    /// With the title where it fits, which it does in a tray that granted the window's wish.
    [[nodiscard]] Picture drawn(Ink ink) const {
        const int side = _needsAttention ? sideOnBadge() : imageSide();
        const int titledWidth = _picture.titledWidth(side);
        const Picture picture = titledWidth > 0 && titledWidth <= _width
                                    ? _picture.drawTitled(side, ink)
                                    : _picture.drawImage(std::min<int>(_width, side), ink);
        return _needsAttention ? badge(picture, _width, _height, ink) : picture;
    }

    void blend(std::vector<std::uint32_t>& pixels) const {
        if (_width == 0 || _height == 0)
            return;
        const Channel red(_visual->red_mask);
        const Channel green(_visual->green_mask);
        const Channel blue(_visual->blue_mask);
        const Picture picture = drawn(inkOver(pixels));
        const int left = (_width - picture.width) / 2;
        const int top = (_height - picture.height) / 2;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const std::uint32_t source = picture.argb[static_cast<std::size_t>(y * picture.width + x)];
                std::uint32_t& pixel = pixels[static_cast<std::size_t>((top + y) * _width + left + x)];
                const std::uint32_t alpha = source >> 24U;
                const std::uint32_t mixed =
                    red.put(over(red.take(pixel), (source >> 16U) & 0xffU, alpha)) |
                    green.put(over(green.take(pixel), (source >> 8U) & 0xffU, alpha)) |
                    blue.put(over(blue.take(pixel), source & 0xffU, alpha));
                // Over nothing this is the colour times its alpha, as windows with alpha want it.
                pixel = _hasAlpha ? mixed | alpha << 24U : mixed;
            }
        }
    }

    Ink inkOver(const std::vector<std::uint32_t>& ground) const {
        if (_trayInk)
            return *_trayInk;
        if (_hasAlpha)
            return _picture.look().ink;
        std::uint64_t sum = 0;
        for (const std::uint32_t pixel : ground)
            sum += luma(Channel(_visual->red_mask).take(pixel), Channel(_visual->green_mask).take(pixel),
                        Channel(_visual->blue_mask).take(pixel));
        return sum / ground.size() < 128 ? Ink::light : Ink::dark;
    }

    /// Turns the byte order of the server into ours, and ours into the server's.
    void exchangeOrder(std::vector<std::uint32_t>& pixels) const {
        const bool serverIsLittle = xcb_get_setup(_xcb)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
        if (serverIsLittle != (std::endian::native == std::endian::little))
            std::ranges::transform(pixels, pixels.begin(),
                                   [](std::uint32_t pixel) { return __builtin_bswap32(pixel); });
    }

    // Events

    /// A reply that was waited for may have brought events into memory, where the socket no longer shows
    /// them.
    void handleLater() {
        QMetaObject::invokeMethod(
            &_owner, [this] { handleEvents(); }, Qt::QueuedConnection);
    }

    void handleEvents() {
        while (true) {
            const XcbReply<xcb_generic_event_t> event(xcb_poll_for_event(_xcb));
            if (event == nullptr)
                break;
            handle(*event);
        }
        if (xcb_connection_has_error(_xcb) != 0 && _notifier != nullptr) {
            _notifier->setEnabled(false);
            _window = XCB_NONE;
            setTray(XCB_NONE);
        }
    }

    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if (message.type == _atoms[manager] && message.data.data32[1] == _selection)
                findTray();
            break;
        }
        case XCB_DESTROY_NOTIFY: {
            const auto& gone = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
            if (gone.window == _tray && _tray != XCB_NONE)
                findTray();
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (property.window == _tray && property.atom == _atoms[trayColors]) {
                _trayInk = inkOfTray();
                draw();
            }
            break;
        }
        default:
            handleOfWindow(event);
        }
    }

    void handleOfWindow(const xcb_generic_event_t& event) {
        if (_window == XCB_NONE)
            return;
        switch (event.response_type & 0x7f) {
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window == _window)
                appeared();
            break;
        case XCB_UNMAP_NOTIFY:
            if (reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window == _window)
                _isMapped = false;
            break;
        case XCB_CONFIGURE_NOTIFY: {
            const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (change.window != _window || (change.width == _width && change.height == _height))
                break;
            _width = change.width;
            _height = change.height;
            wishSize();
            draw();
            break;
        }
        case XCB_EXPOSE: {
            const auto& exposure = reinterpret_cast<const xcb_expose_event_t&>(event);
            if (exposure.window == _window && exposure.count == 0) {
                appeared();
                draw();
            } else if (exposure.window == _tooltip && exposure.count == 0) {
                drawTooltip();
            }
            break;
        }
        case XCB_ENTER_NOTIFY:
            if (isCrossing(reinterpret_cast<const xcb_enter_notify_event_t&>(event)) && _owner.onPointerEnter)
                _owner.onPointerEnter();
            break;
        case XCB_LEAVE_NOTIFY:
            if (isCrossing(reinterpret_cast<const xcb_leave_notify_event_t&>(event)))
                pointerLeft();
            break;
        case XCB_BUTTON_PRESS:
            pressed(reinterpret_cast<const xcb_button_press_event_t&>(event));
            break;
        default:
            break;
        }
    }

    /// Of the pointer itself: a button that is pressed and released is told as a crossing too.
    [[nodiscard]] bool isCrossing(const xcb_enter_notify_event_t& crossing) const {
        return crossing.event == _window && crossing.mode == XCB_NOTIFY_MODE_NORMAL;
    }

    void appeared() {
        if (!std::exchange(_isMapped, true) && !_name.empty())
            tellName(_name);
    }

    void pointerLeft() {
        hideTooltip();
        if (_owner.onPointerLeave)
            _owner.onPointerLeave();
    }

    void pressed(const xcb_button_press_event_t& press) {
        if (press.event != _window)
            return;
        pointerLeft();
        const ScreenRect icon{press.root_x - press.event_x, press.root_y - press.event_y, _width, _height};
        const StatusItemAnchor anchor{icon, ScreenPoint{press.root_x, press.root_y}};
        switch (press.detail) {
        case XCB_BUTTON_INDEX_1:
        case XCB_BUTTON_INDEX_3:
            // The server holds the pointer for us until the button is released; what opens now wants it.
            xcb_ungrab_pointer(_xcb, press.time);
            xcb_flush(_xcb);
            if (_owner.onActivate)
                _owner.onActivate(anchor);
            break;
        case XCB_BUTTON_INDEX_2:
            if (_owner.onSecondaryActivate)
                _owner.onSecondaryActivate();
            break;
        default:
            break;
        }
    }

    // The tooltip

    void openTooltip(const ScreenRect& item, const Picture& words, const ScreenRect& monitor) {
        const int width = words.width + 2 * tooltipPadding;
        const int height = words.height + tooltipPadding;
        const auto [x, y] = tooltipCorner(item, width, height, monitor);
        _tooltip = xcb_generate_id(_xcb);
        const std::uint32_t values[] = {_screen->black_pixel, 1, XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(_xcb, _screen->root_depth, _tooltip, _screen->root, static_cast<std::int16_t>(x),
                          static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                          static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          _screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _tooltip, _atoms[netWindowType], XCB_ATOM_ATOM, 32,
                            1, &_atoms[netTooltip]);
        _tooltipWords = words;
        xcb_map_window(_xcb, _tooltip);
        xcb_flush(_xcb);
    }

    void drawTooltip() {
        const Visual ofScreen = visual(*_screen, _screen->root_visual);
        // Screens of fewer bits pack their pixels in ways of their own.
        if (ofScreen.depth < 24)
            return;
        const int width = _tooltipWords.width + 2 * tooltipPadding;
        const int height = _tooltipWords.height + tooltipPadding;
        std::vector<std::uint32_t> pixels;
        pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                pixels.push_back(tooltipPixel(*ofScreen.type, x - tooltipPadding, y - tooltipPadding / 2));
        }
        exchangeOrder(pixels);
        const xcb_gcontext_t context = xcb_generate_id(_xcb);
        xcb_create_gc(_xcb, context, _tooltip, 0, nullptr);
        xcb_put_image(_xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, _tooltip, context, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, 0, 0, _screen->root_depth,
                      static_cast<std::uint32_t>(pixels.size() * sizeof(std::uint32_t)),
                      reinterpret_cast<const std::uint8_t*>(pixels.data()));
        xcb_free_gc(_xcb, context);
        xcb_flush(_xcb);
    }

    /// What the tooltip shows in that place, counted from the corner of its words.
    [[nodiscard]] std::uint32_t tooltipPixel(const xcb_visualtype_t& visual, int x, int y) const {
        constexpr std::uint32_t ground = 0x2c;
        const bool isInWords = x >= 0 && y >= 0 && x < _tooltipWords.width && y < _tooltipWords.height;
        const std::uint32_t source =
            isInWords ? _tooltipWords.argb[static_cast<std::size_t>(y * _tooltipWords.width + x)] : 0;
        const std::uint32_t alpha = source >> 24U;
        return Channel(visual.red_mask).put(over(ground, (source >> 16U) & 0xffU, alpha)) |
               Channel(visual.green_mask).put(over(ground, (source >> 8U) & 0xffU, alpha)) |
               Channel(visual.blue_mask).put(over(ground, source & 0xffU, alpha));
    }

    void hideTooltip() {
        if (_tooltip == XCB_NONE)
            return;
        xcb_destroy_window(_xcb, std::exchange(_tooltip, nothing));
        xcb_flush(_xcb);
        _tooltipWords = {};
    }

    XEmbedTray& _owner;
    const TitleDrawing& _titles;
    xcb_connection_t* _xcb = nullptr;
    xcb_screen_t* _screen = nullptr;
    std::unique_ptr<QSocketNotifier> _notifier;
    std::array<xcb_atom_t, atomCount> _atoms{};
    xcb_atom_t _selection = XCB_ATOM_NONE;

    bool _isShown = false;
    ItemPicture _picture;
    bool _needsAttention = false;
    std::string _name;

    xcb_window_t _tray = XCB_NONE;
    std::optional<Ink> _trayInk;

    xcb_window_t _window = XCB_NONE;
    xcb_gcontext_t _context = XCB_NONE;
    xcb_colormap_t _colormap = XCB_NONE;
    const xcb_visualtype_t* _visual = nullptr;
    bool _hasAlpha = false;
    bool _isMapped = false;
    std::uint16_t _width = 0;
    std::uint16_t _height = 0;
    int _wishedWidth = 0;
    xcb_window_t _tooltip = XCB_NONE;
    Picture _tooltipWords;
    /// What the tray painted below the window when that could last be read, in our byte order.
    std::vector<std::uint32_t> _ground;
};

XEmbedTray::XEmbedTray(const TitleDrawing& titles, const std::string& displayName)
    : _connection(std::make_unique<Connection>(*this, titles, displayName)) {}

XEmbedTray::~XEmbedTray() = default;

bool XEmbedTray::isAvailable() const {
    return _connection->isAvailable();
}

void XEmbedTray::setLook(ItemLook look) {
    _connection->setLook(std::move(look));
}

void XEmbedTray::setNeedsAttention(bool needsAttention) {
    _connection->setNeedsAttention(needsAttention);
}

void XEmbedTray::setName(const std::string& name) {
    _connection->setName(name);
}

void XEmbedTray::showTooltip(const std::string& words, int height, const std::optional<ScreenRect>& monitor) {
    _connection->showTooltip(words, height, monitor);
}

void XEmbedTray::setShown(bool shown) {
    _connection->setShown(shown);
}

std::optional<ScreenRect> XEmbedTray::geometry() const {
    return _connection->geometry();
}

} // namespace selvane
