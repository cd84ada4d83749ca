#include "Selvane/Platform/Linux/SwayPlacer.h"

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/JSONReader.h"

#include <QtCore/QSocketNotifier>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

// The protocol, which is that of i3: a magic word, the length and the kind as numbers of the machine's own
// byte order, and a payload of JSON.

constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t headSize = magic.size() + 2 * sizeof(std::uint32_t);
/// Longer messages end the connection; those that are waited for have a few kilobytes.
constexpr std::uint32_t longestPayload = 16U << 20U;

enum Kind : std::uint32_t { runCommand = 0, getWorkspaces = 1, subscribe = 2, getOutputs = 3, getTree = 4 };
constexpr std::uint32_t windowEvent = 0x80000003;

/// -1 if nobody listens there.
int connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path))
        return -1;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (file < 0)
        return -1;
    if (connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        return file;
    close(file);
    return -1;
}

std::optional<ScreenRect> rectangle(const JSONValue& value) {
    const auto sides = value.members(std::array<std::string_view, 4>{"x", "y", "width", "height"});
    if (!sides)
        return std::nullopt;
    std::array<int, 4> numbers{};
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const auto number = (*sides)[index].integer();
        if (!number || *number < -1'000'000 || *number > 1'000'000)
            return std::nullopt;
        numbers[index] = static_cast<int>(*number);
    }
    return ScreenRect{numbers[0], numbers[1], numbers[2], numbers[3]};
}

/// The rectangle of that element of a list which is focused.
std::optional<ScreenRect> focusedRectangle(const JSONValue& list) {
    auto elements = list.elements();
    while (elements) {
        const auto element = elements->next();
        if (!element)
            break;
        const auto parts = element->members(std::array<std::string_view, 2>{"rect", "focused"});
        if (parts && (*parts)[1].boolean().value_or(false))
            return rectangle((*parts)[0]);
    }
    return std::nullopt;
}

class SwayPlacement final : public WindowPlacer::Placement {
public:
    SwayPlacement(std::string socket, std::int64_t process, std::string title, WindowPlacer::Choose choose)
        : _socket(std::move(socket)),
          _process(process),
          _title(std::move(title)),
          _choose(std::move(choose)) {
        if (!open())
            return;
        send(subscribe, R"(["window"])");
        askForScreens();
    }
    SwayPlacement(const SwayPlacement&) = delete;
    SwayPlacement& operator=(const SwayPlacement&) = delete;
    ~SwayPlacement() override { end(); }

    [[nodiscard]] bool isConnected() const { return _file >= 0; }

    [[nodiscard]] bool hasWindow() const override { return _window.has_value(); }

    void repeat() override {
        if (!_window)
            return;
        end();
        _received.clear();
        _whole.reset();
        _available.reset();
        _isMoved = false;
        if (open())
            askForScreens();
    }

private:
    bool open() {
        _file = connectTo(_socket);
        if (_file < 0)
            return false;
        _notifier = new QSocketNotifier(_file, QSocketNotifier::Read);
        QObject::connect(_notifier, &QSocketNotifier::activated, _notifier, [this] { readMessages(); });
        return true;
    }

    void end() {
        if (_file < 0)
            return;
        // Later, since this may be the notifier's own call.
        _notifier->setEnabled(false);
        _notifier->disconnect();
        std::exchange(_notifier, nullptr)->deleteLater();
        close(std::exchange(_file, -1));
    }

    void askForScreens() {
        // A workspace is what panels leave of its output.
        send(getWorkspaces, {});
        send(getOutputs, {});
    }

    void send(std::uint32_t kind, std::string_view payload) {
        if (_file < 0)
            return;
        std::string message(magic);
        for (const std::uint32_t number : {static_cast<std::uint32_t>(payload.size()), kind})
            message.append(reinterpret_cast<const char*>(&number), sizeof(number));
        message.append(payload);
        // A few hundred bytes, which the socket takes at once.
        const auto sent = ::send(_file, message.data(), message.size(), MSG_NOSIGNAL);
        if (sent != static_cast<ssize_t>(message.size()))
            end();
    }

    void readMessages() {
        std::array<char, 4096> buffer;
        while (_file >= 0) {
            const auto count = read(_file, buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && errno == EAGAIN)
                break;
            if (count <= 0)
                return end();
            _received.append(buffer.data(), static_cast<std::size_t>(count));
        }
        while (_file >= 0 && _received.size() >= headSize) {
            std::array<std::uint32_t, 2> head{};
            std::memcpy(head.data(), _received.data() + magic.size(), sizeof(head));
            const auto [size, kind] = head;
            if (!_received.starts_with(magic) || size > longestPayload)
                return end();
            if (_received.size() < headSize + size)
                return;
            const std::string payload = _received.substr(headSize, size);
            _received.erase(0, headSize + size);
            handle(kind, payload);
        }
    }

    void handle(std::uint32_t kind, const std::string& payload) {
        const auto contents = FileContents::copy(payload);
        const auto document = JSONDocument::parse(contents);
        if (!document)
            return end();
        switch (kind) {
        case getWorkspaces:
            _available = focusedRectangle(document->root());
            break;
        case getOutputs:
            _whole = focusedRectangle(document->root());
            break;
        case windowEvent:
            windowChanged(document->root());
            break;
        case subscribe:
            // The window may have come before its events were asked for.
            if (!_window)
                send(getTree, {});
            break;
        case getTree:
            findWindow(document->root());
            break;
        case runCommand:
            return end();
        default:
            break;
        }
        move();
    }

    void windowChanged(const JSONValue& event) {
        const auto parts = event.members(std::array<std::string_view, 2>{"change", "container"});
        // A new window is told without its title, which follows at once.
        if (!parts || ((*parts)[0].text() != "new" && (*parts)[0].text() != "title"))
            return;
        take((*parts)[1]);
    }

    /// Looks through a container and those in it.
    void findWindow(const JSONValue& container) {
        take(container);
        const auto parts = container.members(std::array<std::string_view, 2>{"nodes", "floating_nodes"});
        if (_window || !parts)
            return;
        for (const JSONValue& part : *parts) {
            auto inner = part.elements();
            while (inner && !_window) {
                const auto next = inner->next();
                if (!next)
                    break;
                findWindow(*next);
            }
        }
    }

    /// Takes a container for the window if it is that.
    void take(const JSONValue& container) {
        const auto window = container.members(std::array<std::string_view, 3>{"id", "name", "pid"});
        if (!_window && window && (*window)[1].text() == _title && (*window)[2].integer() == _process)
            _window = (*window)[0].integer();
    }

    void move() {
        if (_isMoved || !_window || !_available || !_whole)
            return;
        const ScreenPoint corner = _choose({*_whole, *_available});
        // Once it has its place the user may let it lie as the others do.
        const std::string floating = std::exchange(_isFloated, true) ? "" : "floating enable, ";
        send(runCommand, "[con_id=" + std::to_string(*_window) + "] " + floating + "move absolute position " +
                             std::to_string(corner.x) + " px " + std::to_string(corner.y) + " px");
        _isMoved = true;
    }

    std::string _socket;
    std::int64_t _process;
    std::string _title;
    WindowPlacer::Choose _choose;
    int _file = -1;
    /// Null without a connection.
    QSocketNotifier* _notifier = nullptr;
    std::string _received;
    std::optional<ScreenRect> _whole;
    std::optional<ScreenRect> _available;
    std::optional<std::int64_t> _window;
    bool _isFloated = false;
    bool _isMoved = false;
};

} // namespace

SwayPlacer::SwayPlacer(std::string socket, std::int64_t process)
    : _socket(std::move(socket)), _process(process) {}

std::unique_ptr<WindowPlacer::Placement> SwayPlacer::placeNext(const std::string& title, Choose choose) {
    auto placement = std::make_unique<SwayPlacement>(_socket, _process, title, std::move(choose));
    return placement->isConnected() ? std::move(placement) : nullptr;
}

} // namespace selvane
