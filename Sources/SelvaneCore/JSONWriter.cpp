#include "SelvaneCore/JSONWriter.h"

#include "SelvaneCore/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <new>
#include <string>

namespace selvane {

namespace {

class JSONWriteCategory final : public std::error_category {
public:
    [[nodiscard]] const char* name() const noexcept override { return "selvane-json-write"; }
    [[nodiscard]] std::string message(int value) const override {
        switch (static_cast<JSONWriteError>(value)) {
        case JSONWriteError::textIsNotUTF8:
            return "Some text is not valid UTF-8";
        case JSONWriteError::numberIsNotFinite:
            return "Some number is not finite";
        }
        return "No error";
    }
};

constexpr std::string_view hexadecimalDigits = "0123456789ABCDEF";
constexpr std::string_view lowerHexadecimalDigits = "0123456789abcdef";

constexpr std::chrono::sys_seconds firstDate = std::chrono::sys_days{std::chrono::year{0} / 1 / 1};
constexpr std::chrono::sys_seconds lastDate =
    std::chrono::sys_days{std::chrono::year{10000} / 1 / 1} - std::chrono::seconds{1};

/// The two decimal digits of each number below 100, one after another.
constexpr auto digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t number = 0; number < 100; ++number) {
        pairs[2 * number] = static_cast<char>('0' + number / 10);
        pairs[2 * number + 1] = static_cast<char>('0' + number % 10);
    }
    return pairs;
}();

void putPair(char* at, unsigned number) {
    std::memcpy(at, &digitPairs[std::size_t{2} * number], 2);
}

/// True if none of the eight bytes needs an escape or a look at its encoding. Exact for bytes below 0x80.
bool isPlain(std::uint64_t bytes) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    constexpr std::uint64_t highs = ones * 0x80;
    const auto holds = [](std::uint64_t word, unsigned char byte) {
        const std::uint64_t difference = word ^ (ones * byte);
        return (difference - ones) & ~difference;
    };
    const std::uint64_t controls = (bytes - ones * 0x20) & ~bytes;
    return ((bytes | controls | holds(bytes, '"') | holds(bytes, '\\') | holds(bytes, '/')) & highs) == 0;
}

bool isPlain(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\' && byte != '/';
}

/// What stands for the character after a backslash; 0 where the character stands for itself or is told by
/// its number.
char shortEscape(char character) {
    switch (character) {
    case '"':
    case '\\':
    case '/':
        return character;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

} // namespace

std::error_code make_error_code(JSONWriteError error) {
    static const JSONWriteCategory category;
    return {static_cast<int>(error), category};
}

void JSONWriter::grow(std::size_t count) {
    const auto used = static_cast<std::size_t>(_cursor - _bytes.get());
    const std::size_t capacity = std::max<std::size_t>(2 * (used + count), 4096);
    auto* const bytes = static_cast<char*>(std::realloc(_bytes.get(), capacity));
    if (!bytes)
        throw std::bad_alloc();
    static_cast<void>(_bytes.release());
    _bytes.reset(bytes);
    _cursor = bytes + used;
    _end = bytes + capacity;
}

void JSONWriter::fail(JSONWriteError error) {
    if (_error == JSONWriteError{})
        _error = error;
}

void JSONWriter::open(char bracket) {
    beginValue(0);
    put(bracket);
    _indent += indentStep;
    _hasEntries = false;
}

void JSONWriter::close(char bracket) {
    _indent -= indentStep;
    ensure(_indent);
    if (!_hasEntries)
        put('\n');
    breakLine();
    put(bracket);
    // Whatever this one stands in has an entry now: this one.
    _hasEntries = true;
}

void JSONWriter::anyKey(std::string_view text) {
    beginEntry(0);
    quoted(text);
    ensure(0);
    std::memcpy(_cursor, " : ", 3);
    _cursor += 3;
    _followsKey = true;
}

void JSONWriter::value(std::string_view text) {
    beginValue(0);
    quoted(text);
}

void JSONWriter::quoted(std::string_view text) {
    ensure(text.size());
    const char* from = text.data();
    const char* const end = from + text.size();
    char* const start = _cursor;
    put('"');
    while (end - from >= 8) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, from, 8);
        if (!isPlain(bytes))
            break;
        std::memcpy(_cursor, &bytes, 8);
        _cursor += 8;
        from += 8;
    }
    while (from != end && isPlain(*from))
        put(*from++);
    if (from != end) {
        _cursor = start;
        quotedSlowly(text);
        return;
    }
    put('"');
}

void JSONWriter::quotedSlowly(std::string_view text) {
    if (!Text::isValid(text)) {
        fail(JSONWriteError::textIsNotUTF8);
        return;
    }
    constexpr std::size_t longestEscape = 6;
    ensure(text.size() * longestEscape);
    put('"');
    for (const char character : text) {
        if (const char escape = shortEscape(character)) {
            put('\\');
            put(escape);
        } else if (static_cast<unsigned char>(character) < 0x20) {
            std::memcpy(_cursor, "\\u00", 4);
            _cursor += 4;
            put(lowerHexadecimalDigits[static_cast<unsigned char>(character) >> 4]);
            put(lowerHexadecimalDigits[static_cast<unsigned char>(character) & 0xf]);
        } else {
            put(character);
        }
    }
    put('"');
}

void JSONWriter::value(double number) {
    constexpr double signedEnd = 9223372036854775808.0;
    constexpr double unsignedEnd = 18446744073709551616.0;

    if (!std::isfinite(number)) {
        fail(JSONWriteError::numberIsNotFinite);
        return;
    }
    beginValue(0);
    const bool isWhole = std::trunc(number) == number;
    std::to_chars_result written{};
    if (isWhole && number >= -signedEnd && number < signedEnd && !(number == 0 && std::signbit(number)))
        written = std::to_chars(_cursor, _end, static_cast<std::int64_t>(number));
    else if (isWhole && number > 0 && number < unsignedEnd)
        written = std::to_chars(_cursor, _end, static_cast<std::uint64_t>(number));
    else if (isWhole && number != 0)
        // As plain digits it would be an integer of more than 64 bits, which our own reader refuses.
        written = std::to_chars(_cursor, _end, number, std::chars_format::scientific);
    else
        written = std::to_chars(_cursor, _end, number);
    _cursor = written.ptr;
}

void JSONWriter::value(std::int64_t number) {
    beginValue(0);
    _cursor = std::to_chars(_cursor, _end, number).ptr;
}

void JSONWriter::value(bool flag) {
    beginValue(0);
    const std::string_view text = flag ? "true" : "false";
    std::memcpy(_cursor, text.data(), text.size());
    _cursor += text.size();
}

void JSONWriter::value(Date date) {
    using namespace std::chrono;
    beginValue(0);
    const sys_seconds whole = std::clamp(floor<seconds>(date), firstDate, lastDate);
    const sys_days day = floor<days>(whole);
    const year_month_day civil{day};
    const auto year = static_cast<unsigned>(static_cast<int>(civil.year()));
    const auto second = static_cast<unsigned>((whole - day).count());

    std::memcpy(_cursor, "\"0000-00-00T00:00:00Z\"", 22);
    putPair(_cursor + 1, year / 100);
    putPair(_cursor + 3, year % 100);
    putPair(_cursor + 6, static_cast<unsigned>(civil.month()));
    putPair(_cursor + 9, static_cast<unsigned>(civil.day()));
    putPair(_cursor + 12, second / 3600);
    putPair(_cursor + 15, second / 60 % 60);
    putPair(_cursor + 18, second % 60);
    _cursor += 22;
}

void JSONWriter::value(const UUID& id) {
    beginValue(0);
    put('"');
    for (std::size_t index = 0; index < id.bytes().size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            put('-');
        put(hexadecimalDigits[id.bytes()[index] >> 4]);
        put(hexadecimalDigits[id.bytes()[index] & 0xf]);
    }
    put('"');
}

tl::expected<std::string_view, JSONWriteError> JSONWriter::finish() const {
    if (_error != JSONWriteError{})
        return tl::unexpected(_error);
    return std::string_view(_bytes.get(), static_cast<std::size_t>(_cursor - _bytes.get()));
}

} // namespace selvane
