#include "Selvane/Platform/Linux/ActivationToken.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace selvane::ActivationToken {

namespace {

/// What the environment points to. Readers of other variables compare its beginning, which never changes.
std::array<char, 1024> text{"XDG_ACTIVATION_TOKEN="};
constexpr std::size_t beginning = std::char_traits<char>::length(variable) + 1;

/// The environment as the program left it, with one place to spare. Never destroyed: libraries read the
/// environment while they end, which is later.
std::vector<char*>& places = *new std::vector<char*>;

void write(std::string_view token) {
    token.copy(text.data() + beginning, token.size());
    text[beginning + token.size()] = '\0';
}

/// The place after the last variable. Null if somebody else has put another environment in place of ours, or
/// if ours is full.
char** freePlace() {
    if (places.empty() || environ != places.data())
        return nullptr;
    // The last place is always null.
    for (std::size_t index = 0; index + 1 < places.size(); ++index) {
        if (places[index] == nullptr)
            return &places[index];
    }
    return nullptr;
}

} // namespace

void prepare() {
    const char* const given = std::getenv(variable);
    const std::string_view token = given ? given : "";
    const bool isToStay = !token.empty() && token.size() + beginning < text.size();
    if (isToStay)
        write(token);
    unsetenv(variable);
    places.clear();
    for (char** place = environ; place != nullptr && *place != nullptr; ++place)
        places.push_back(*place);
    places.insert(places.end(), 2, nullptr);
    environ = places.data();
    if (isToStay)
        *freePlace() = text.data();
}

void leave(std::string_view token) {
    if (token.size() + beginning >= text.size() || token.find('\0') != token.npos)
        return;
    write(token);
    if (std::getenv(variable) == text.data() + beginning)
        return;
    if (char** const place = freePlace())
        std::atomic_ref(*place).store(text.data(), std::memory_order_release);
    else
        putenv(text.data());
}

void drop() {
    // As the last one it is taken out without another one's moving.
    unsetenv(variable);
}

} // namespace selvane::ActivationToken
