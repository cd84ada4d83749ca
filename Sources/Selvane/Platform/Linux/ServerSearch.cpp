#include "Selvane/Platform/Linux/ServerSearch.h"

#include <QtCore/QSocketNotifier>
#include <QtCore/QtGlobal>

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

/// The folder of the socket that libpulse tries first, if the environment names one.
std::optional<std::filesystem::path> socketFolder() {
    if (const QByteArray folder = qgetenv("PULSE_RUNTIME_PATH"); !folder.isEmpty())
        return folder.toStdString();
    if (const QByteArray folder = qgetenv("XDG_RUNTIME_DIR"); !folder.isEmpty())
        return std::filesystem::path(folder.toStdString()) / "pulse";
    return std::nullopt;
}

constexpr std::string_view socketName = "native";
constexpr std::uint32_t arrival = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR;

} // namespace

/// Tells when the socket appears in its folder, and when the folder does. Without leave to watch it never
/// tells anything.
class ServerSearch::SocketWatch {
public:
    SocketWatch(const std::filesystem::path& folder, std::function<void()> appeared)
        : _folder(folder),
          _appeared(std::move(appeared)),
          _descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        if (_descriptor == -1)
            return;
        // First, so that no folder is missed that comes meanwhile.
        inotify_add_watch(_descriptor, folder.parent_path().c_str(), arrival);
        watchFolder();
        _notifier = std::make_unique<QSocketNotifier>(_descriptor, QSocketNotifier::Read);
        QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(),
                         [this] { readEvents(); });
    }
    SocketWatch(const SocketWatch&) = delete;
    SocketWatch& operator=(const SocketWatch&) = delete;
    ~SocketWatch() {
        _notifier.reset();
        if (_descriptor != -1)
            close(_descriptor);
    }

private:
    /// Nothing changes if it is watched already.
    void watchFolder() { _inFolder = inotify_add_watch(_descriptor, _folder.c_str(), arrival); }

    void readEvents() {
        bool isNews = false;
        alignas(inotify_event) std::array<char, 4096> bytes;
        while (true) {
            const ssize_t size = read(_descriptor, bytes.data(), bytes.size());
            if (size <= 0)
                break;
            for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
                inotify_event event{};
                std::memcpy(&event, bytes.data() + at, sizeof event);
                const char* const name = bytes.data() + at + sizeof event;
                isNews = concerns(event, event.len == 0 ? "" : name) || isNews;
                at += sizeof event + event.len;
            }
        }
        if (isNews)
            _appeared();
    }

    bool concerns(const inotify_event& event, std::string_view name) {
        if (event.wd == _inFolder)
            return name == socketName;
        if (name != _folder.filename().string())
            return false;
        // The socket may be in it already.
        watchFolder();
        return true;
    }

    std::filesystem::path _folder;
    std::function<void()> _appeared;
    int _descriptor;
    int _inFolder = -1;
    std::unique_ptr<QSocketNotifier> _notifier;
};

ServerSearch::ServerSearch(Scheduler& scheduler, std::function<void()> look)
    : _scheduler(scheduler), _look(std::move(look)) {}

ServerSearch::~ServerSearch() = default;

void ServerSearch::wait() {
    if (_watch == nullptr) {
        if (const auto folder = socketFolder())
            _watch = std::make_unique<SocketWatch>(*folder, [this] { socketAppeared(); });
    }
    if (_next)
        return;
    const Seconds delay = std::exchange(_delay, std::min(2 * _delay, longestWait));
    _next = _scheduler.after(delay, [this] { lookNow(); });
}

void ServerSearch::end() {
    _next.end();
    _watch.reset();
}

void ServerSearch::lookNow() {
    _next.end();
    _look();
}

void ServerSearch::socketAppeared() {
    _delay = waitForNewServer;
    // A look that is under way maybe came too early, and is then followed by another one as soon.
    if (_next) {
        _next.end();
        wait();
    }
}

} // namespace selvane
