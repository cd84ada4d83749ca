#pragma once

#include "Support/TemporaryFolder.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace selvane::test {

/// Listens as the journal does, at a place of its own.
class FakeJournal {
public:
    FakeJournal() : _path((_folder.path() / "socket").string()) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, _path.c_str());
        _socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        isThere = ::bind(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    FakeJournal(const FakeJournal&) = delete;
    FakeJournal& operator=(const FakeJournal&) = delete;
    ~FakeJournal() { ::close(_socket); }

    [[nodiscard]] const char* path() const { return _path.c_str(); }

    /// The oldest entry that was not received yet.
    [[nodiscard]] std::optional<std::string> receive() const {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::recv(_socket, bytes.data(), bytes.size(), 0);
        if (count < 0)
            return std::nullopt;
        return std::string(bytes.data(), static_cast<std::size_t>(count));
    }

    bool isThere = false;

    /// The line in the oldest entry that was not received yet, without what it begins with.
    [[nodiscard]] std::optional<std::string> receiveLine() const {
        constexpr std::string_view beginning = "MESSAGE=Selvane: ";
        const std::optional<std::string> entry = receive();
        const std::size_t place = entry ? entry->find(beginning) : std::string::npos;
        if (place == std::string::npos)
            return std::nullopt;
        const std::size_t first = place + beginning.size();
        return entry->substr(first, entry->find('\n', first) - first);
    }

private:
    TemporaryFolder _folder;
    std::string _path;
    int _socket;
};

} // namespace selvane::test
