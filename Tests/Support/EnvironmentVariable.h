#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace selvane::test {

/// Gives a variable of the environment another value, or takes it away. What was there comes back with the
/// object's end. At both moments no other thread may read the environment.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::optional<std::string>& value) : _name(name) {
        if (const char* const before = std::getenv(name))
            _before = before;
        set(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(_before); }

private:
    void set(const std::optional<std::string>& value) {
        if (value)
            ::setenv(_name, value->c_str(), 1);
        else
            ::unsetenv(_name);
    }

    const char* _name;
    std::optional<std::string> _before;
};

} // namespace selvane::test
