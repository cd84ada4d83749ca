#include "SelvaneCore/Log.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace selvane::Log {

namespace {

std::atomic<const char*> journal = nullptr;

/// Whether standard error is the stream of which the service manager said that it leads to the journal, and
/// was not redirected since.
bool isStandardErrorTheJournal() {
    const char* const stream = std::getenv("JOURNAL_STREAM");
    struct stat status {};
    return stream && ::fstat(STDERR_FILENO, &status) == 0 &&
           stream == std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

bool send(const char* socket, std::string_view text) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::strlen(socket) >= sizeof address.sun_path)
        return false;
    std::strcpy(address.sun_path, socket);
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    // 4 is a warning: the program goes on.
    std::string entry = "PRIORITY=4\nSYSLOG_IDENTIFIER=selvane\nMESSAGE=";
    entry.append(text).append("\n");
    const auto sent = ::sendto(descriptor, entry.data(), entry.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(descriptor);
    return sent == static_cast<ssize_t>(entry.size());
}

/// Whether the journal has the text, so that it is nowhere else to be written.
bool isInJournal(std::string_view text) {
    const char* const socket = journal;
    return socket && send(socket, text) && ::isatty(STDERR_FILENO) == 0;
}

} // namespace

void line(std::string_view message) {
    std::string text = "Selvane: ";
    for (const char character : message)
        text += static_cast<unsigned char>(character) < 0x20 || character == 0x7f ? ' ' : character;
    if (isInJournal(text))
        return;
    text += '\n';
    // One call, so that lines of several processes don't mix.
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void toJournal(const char* socket) {
    journal = isStandardErrorTheJournal() ? nullptr : socket;
}

void toStandardError() {
    journal = nullptr;
}

} // namespace selvane::Log
