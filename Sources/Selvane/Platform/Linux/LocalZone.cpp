#include "Selvane/Platform/Linux/LocalZone.h"

#include <absl/time/time.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

/// Abseil reads a zone once for each name, and knows the local one by the name of the file.
Calendar firstFound() {
    return Calendar(absl::LocalTimeZone());
}

/// Whether TZ names a zone of its own; it may also say that the zone is the machine's.
bool environmentDecides(std::string_view link) {
    const char* const variable = std::getenv("TZ");
    if (variable == nullptr)
        return false;
    std::string_view zone(variable);
    if (zone.starts_with(':'))
        zone.remove_prefix(1);
    return zone != "localtime" && zone != link;
}

Calendar calendarOf(std::string_view target) {
    constexpr std::string_view folder = "zoneinfo/";
    const std::size_t start = target.rfind(folder);
    if (start == std::string_view::npos)
        return firstFound();
    return Calendar::named(target.substr(start + folder.size())).value_or(firstFound());
}

} // namespace

LocalZone::LocalZone(std::string link) : _link(std::move(link)), _calendar(firstFound()) {}

Calendar LocalZone::current() {
    if (environmentDecides(_link))
        return firstFound();
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = readlink(_link.c_str(), buffer.data(), buffer.size());
    const std::string_view target(buffer.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    if (target != _target) {
        _target = target;
        _calendar = calendarOf(target);
    }
    return _calendar;
}

} // namespace selvane
