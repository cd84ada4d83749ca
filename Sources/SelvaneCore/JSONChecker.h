#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/UUID.h"

#include <cstdint>
#include <string_view>

namespace selvane {

/// Takes the same calls as `JSONWriter` and writes nothing: tells beforehand whether everything has a JSON
/// form.
class JSONChecker {
public:
    void beginObject() {}
    void endObject() {}
    void beginArray() {}
    void endArray() {}
    void key(JSONKey) {}
    void anyKey(std::string_view text) { value(text); }

    void value(std::string_view text);
    void value(double number);
    void value(std::int64_t) {}
    void value(int) {}
    void value(bool) {}
    void value(const char*) = delete;
    void value(Date) {}
    void value(const UUID&) {}

    /// Why the first value that has no form has none.
    [[nodiscard]] tl::expected<void, JSONWriteError> outcome() const;

private:
    JSONWriteError _error{};
};

} // namespace selvane
