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

/// The two hexadecimal digits of each byte, one after another.
constexpr auto hexadecimalPairs = [] {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::array<char, 512> pairs{};
    for (std::size_t number = 0; number < 256; ++number) {
        pairs[2 * number] = digits[number >> 4];
        pairs[2 * number + 1] = digits[number & 0xf];
    }
    return pairs;
}();

void putPair(char* at, unsigned number) {
    std::memcpy(at, &digitPairs[std::size_t{2} * number], 2);
}

/// Writes a number that is a count of microseconds, as every length of time is that was measured between two
/// instants, and gives the end; null for any other number. The digits are those of the shortest form: no two
/// texts of up to 15 digits mean the same float, and from a thousandth on no exponent makes it shorter.
char* writeMicroseconds(char* at, double number) {
    constexpr double scale = 1e6;
    const double size = std::fabs(number);
    if (!(size >= 1e-3 && size < 1e9))
        return nullptr;
    const auto count = static_cast<std::uint64_t>(size * scale + 0.5);
    if (static_cast<double>(count) / scale != size)
        return nullptr;

    if (number < 0)
        *at++ = '-';
    at = std::to_chars(at, at + 10, count / 1'000'000).ptr;
    const auto fraction = static_cast<unsigned>(count % 1'000'000);
    *at++ = '.';
    putPair(at, fraction / 10'000);
    putPair(at + 2, fraction / 100 % 100);
    putPair(at + 4, fraction % 100);
    at += 6;
    while (at[-1] == '0')
        --at;
    return at;
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

/// The same for each single byte.
constexpr auto plainBytes = [] {
    std::array<bool, 256> plain{};
    for (unsigned byte = 0x20; byte < 0x80; ++byte)
        plain[byte] = byte != '"' && byte != '\\' && byte != '/';
    return plain;
}();

bool isPlain(char character) {
    return plainBytes[static_cast<unsigned char>(character)];
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
    auto used = static_cast<std::size_t>(_cursor - _bytes.get());
    auto capacity = static_cast<std::size_t>(_end - _bytes.get());
    if (_sink && used > 0) {
        _sink({_bytes.get(), used});
        used = 0;
    }
    if (used + count > capacity) {
        capacity = std::max(_sink ? pieceSize : std::size_t{4096}, 2 * (used + count));
        auto* const bytes = static_cast<char*>(std::realloc(_bytes.get(), capacity));
        if (!bytes)
            throw std::bad_alloc();
        static_cast<void>(_bytes.release());
        _bytes.reset(bytes);
        _end = bytes + capacity;
    }
    _cursor = _bytes.get() + used;
}

void JSONWriter::fail(JSONWriteError error) {
    if (_error == JSONWriteError{})
        _error = error;
}

void JSONWriter::open(char bracket) {
    char* const at = beginValue(0);
    *at = bracket;
    _cursor = at + 1;
    _indent += indentStep;
    _hasEntries = false;
}

void JSONWriter::close(char bracket) {
    _indent -= indentStep;
    ensure(_indent);
    char* at = _cursor;
    if (!_hasEntries)
        *at++ = '\n';
    at = breakLine(at);
    *at = bracket;
    _cursor = at + 1;
    // Whatever this one stands in has an entry now: this one.
    _hasEntries = true;
}

void JSONWriter::anyKey(std::string_view text) {
    _cursor = beginEntry(text.size());
    _cursor = quoted(text);
    constexpr std::string_view separator = " : ";
    ensure(separator.size());
    std::memcpy(_cursor, separator.data(), separator.size());
    _cursor += separator.size();
    _followsKey = true;
}

void JSONWriter::value(std::string_view text) {
    _cursor = beginValue(text.size());
    _cursor = quoted(text);
}

char* JSONWriter::quoted(std::string_view text) {
    ensure(text.size());
    const char* from = text.data();
    const char* const end = from + text.size();
    char* at = _cursor;
    *at++ = '"';
    constexpr std::ptrdiff_t step = 8;
    const auto copyStep = [](const char* source, char* target) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, source, step);
        std::memcpy(target, &bytes, step);
        return isPlain(bytes);
    };
    if (text.size() >= step) {
        for (; end - from > step; from += step, at += step) {
            if (!copyStep(from, at))
                return quotedSlowly(text);
        }
        // The last step ends where the text does, and overlaps the one before.
        const std::ptrdiff_t left = end - from;
        if (!copyStep(end - step, at + left - step))
            return quotedSlowly(text);
        at += left;
        from = end;
    }
    while (from != end && isPlain(*from))
        *at++ = *from++;
    if (from != end)
        return quotedSlowly(text);
    *at++ = '"';
    return at;
}

char* JSONWriter::quotedSlowly(std::string_view text) {
    if (!Text::isValid(text)) {
        fail(JSONWriteError::textIsNotUTF8);
        return _cursor;
    }
    constexpr std::size_t longestEscape = 6;
    ensure(text.size() * longestEscape);
    char* at = _cursor;
    *at++ = '"';
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x80 || isPlain(character)) {
            *at++ = character;
        } else if (const char escape = shortEscape(character)) {
            *at++ = '\\';
            *at++ = escape;
        } else if (byte < 0x20) {
            std::memcpy(at, "\\u00", 4);
            at[4] = lowerHexadecimalDigits[byte >> 4];
            at[5] = lowerHexadecimalDigits[byte & 0xf];
            at += longestEscape;
        } else {
            *at++ = character;
        }
    }
    *at++ = '"';
    return at;
}

void JSONWriter::value(double number) {
    constexpr double signedEnd = 9223372036854775808.0;
    constexpr double unsignedEnd = 18446744073709551616.0;

    if (!std::isfinite(number)) {
        fail(JSONWriteError::numberIsNotFinite);
        return;
    }
    char* const at = beginValue(0);
    if (number >= -signedEnd && number < signedEnd) {
        const auto whole = static_cast<std::int64_t>(number);
        if (static_cast<double>(whole) == number)
            _cursor = std::to_chars(at, _end, whole).ptr;
        else if (char* const end = writeMicroseconds(at, number))
            _cursor = end;
        else
            _cursor = std::to_chars(at, _end, number).ptr;
    } else if (number > 0 && number < unsignedEnd) {
        _cursor = std::to_chars(at, _end, static_cast<std::uint64_t>(number)).ptr;
    } else {
        // As plain digits it would be an integer of more than 64 bits, which our own reader refuses.
        _cursor = std::to_chars(at, _end, number, std::chars_format::scientific).ptr;
    }
}

void JSONWriter::value(std::int64_t number) {
    char* const at = beginValue(0);
    _cursor = std::to_chars(at, _end, number).ptr;
}

void JSONWriter::value(bool flag) {
    char* const at = beginValue(0);
    const std::string_view text = flag ? "true" : "false";
    std::memcpy(at, text.data(), text.size());
    _cursor = at + text.size();
}

void JSONWriter::value(Date date) {
    using namespace std::chrono;
    char* const at = beginValue(0);
    const sys_seconds whole = std::clamp(floor<seconds>(date), firstDate, lastDate);
    const sys_days day = floor<days>(whole);
    const year_month_day civil{day};
    const auto year = static_cast<unsigned>(static_cast<int>(civil.year()));
    const auto second = static_cast<unsigned>((whole - day).count());

    constexpr std::string_view form = "\"0000-00-00T00:00:00Z\"";
    std::memcpy(at, form.data(), form.size());
    putPair(at + 1, year / 100);
    putPair(at + 3, year % 100);
    putPair(at + 6, static_cast<unsigned>(civil.month()));
    putPair(at + 9, static_cast<unsigned>(civil.day()));
    putPair(at + 12, second / 3600);
    putPair(at + 15, second / 60 % 60);
    putPair(at + 18, second % 60);
    _cursor = at + form.size();
}

void JSONWriter::value(const UUID& id) {
    char* at = beginValue(0);
    *at++ = '"';
    for (std::size_t index = 0; index < id.bytes().size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            *at++ = '-';
        std::memcpy(at, &hexadecimalPairs[std::size_t{2} * id.bytes()[index]], 2);
        at += 2;
    }
    *at++ = '"';
    _cursor = at;
}

tl::expected<std::string_view, JSONWriteError> JSONWriter::finish() const {
    if (_error != JSONWriteError{})
        return tl::unexpected(_error);
    return std::string_view(_bytes.get(), static_cast<std::size_t>(_cursor - _bytes.get()));
}

} // namespace selvane
