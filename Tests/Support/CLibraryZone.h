#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace selvane::test {

/// The zone of the C library, for as long as this lives. A second opinion on local time: the C library reads
/// the rules of the zones by itself. Not beside other threads.
class ZoneInForce {
public:
    explicit ZoneInForce(const std::string& name) {
        if (const char* const before = std::getenv("TZ"))
            _before = before;
        ::setenv("TZ", name.c_str(), 1);
        ::tzset();
    }
    ~ZoneInForce() {
        if (_before)
            ::setenv("TZ", _before->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    ZoneInForce(const ZoneInForce&) = delete;
    ZoneInForce& operator=(const ZoneInForce&) = delete;

private:
    std::optional<std::string> _before;
};

/// The local time of an instant in the zone in force.
[[nodiscard]] inline std::tm localTime(std::time_t time) {
    std::tm result{};
    ::localtime_r(&time, &result);
    return result;
}

} // namespace selvane::test
