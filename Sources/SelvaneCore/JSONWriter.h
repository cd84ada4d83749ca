#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/UUID.h"

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace selvane {

/// Why a value has no JSON form.
enum class JSONWriteError { textIsNotUTF8 = 1, numberIsNotFinite };

[[nodiscard]] std::error_code make_error_code(JSONWriteError error);

/// A key that is known when the program is built and needs no escapes.
class JSONKey {
public:
    consteval JSONKey(const char* text) : _text(text) {
        for (const char character : _text) {
            if (character < 0x20 || character == '"' || character == '\\' || character == '/')
                throw "a key that needs escapes";
        }
    }

    [[nodiscard]] constexpr std::string_view text() const { return _text; }

private:
    std::string_view _text;
};

/// Writes the one JSON form that this program's files have: two-space indents, `"key" : value`, an escaped
/// slash, no final line break. Equal calls give equal bytes, whatever the locale.
///
/// The caller gives keys in ascending order of their bytes, balances begin and end, and puts a key before
/// each value in an object. The first value that has no JSON form makes the whole text a failure, which
/// `finish` tells; the calls after it do no harm.
class JSONWriter {
public:
    /// Takes the text piece by piece, in order.
    using Sink = std::function<void(std::string_view)>;

    /// Keeps the whole text.
    JSONWriter() = default;
    /// Hands the text to `sink` whenever a piece of about `pieceSize` bytes is full, and keeps the last
    /// piece.
    explicit JSONWriter(Sink sink) : _sink(std::move(sink)) {}

    static constexpr std::size_t pieceSize = std::size_t{1} << 20;

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }

    /// The key of the next value.
    void key(JSONKey key) {
        const std::string_view text = key.text();
        // A local cursor: bytes that are written through a member could be the member's own.
        char* at = beginEntry(text.size());
        *at++ = '"';
        std::memcpy(at, text.data(), text.size());
        at += text.size();
        std::memcpy(at, "\" : ", 4);
        _cursor = at + 4;
        _followsKey = true;
    }

    /// The key of the next value where it is only known when the program runs; escaped as a text is.
    void anyKey(std::string_view text);

    void value(std::string_view text);
    /// Shortest digits that read back as the same number; a whole number without fraction and exponent as
    /// long as it fits 64 bits.
    void value(double number);
    void value(std::int64_t number);
    void value(int number) { value(std::int64_t{number}); }
    void value(bool flag);
    void value(const char*) = delete;
    /// In UTC and whole seconds, the fraction dropped. An instant outside the years 0000 to 9999 is written
    /// as the nearest that lies in them.
    void value(Date date);
    void value(const UUID& id);

    /// The text, or its last piece if there is a sink. Valid until the next call and as long as the writer.
    [[nodiscard]] tl::expected<std::string_view, JSONWriteError> finish() const;

private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };

    /// More than any entry needs beside its text and its indent.
    static constexpr std::size_t slack = 64;
    static constexpr std::size_t indentStep = 2;

    void ensure(std::size_t count) {
        if (static_cast<std::size_t>(_end - _cursor) < count + slack) [[unlikely]]
            grow(count + slack);
    }
    void grow(std::size_t count);

    /// What stands before a key or an element. Gives where it goes, with room for `count` bytes and the
    /// slack.
    [[nodiscard]] char* beginEntry(std::size_t count) {
        ensure(count + _indent);
        char* at = _cursor;
        if (_hasEntries)
            *at++ = ',';
        _hasEntries = true;
        return breakLine(at);
    }
    [[nodiscard]] char* beginValue(std::size_t count) {
        if (!_followsKey && _indent != 0)
            return beginEntry(count);
        _followsKey = false;
        ensure(count);
        return _cursor;
    }
    [[nodiscard]] char* breakLine(char* at) const {
        static constexpr std::string_view blanks = "                ";
        *at++ = '\n';
        // Copies of a fixed length are a few instructions; what is too much is overwritten.
        if (_indent <= blanks.size())
            std::memcpy(at, blanks.data(), blanks.size());
        else
            std::memset(at, ' ', _indent);
        return at + _indent;
    }
    void open(char bracket);
    void close(char bracket);
    /// Writes at the cursor and gives the end.
    [[nodiscard]] char* quoted(std::string_view text);
    [[nodiscard]] char* quotedSlowly(std::string_view text);
    void fail(JSONWriteError error);

    Sink _sink;
    /// Grown by realloc, which moves the pages of a large block instead of its bytes.
    std::unique_ptr<char, Free> _bytes;
    char* _cursor = nullptr;
    char* _end = nullptr;
    std::size_t _indent = 0;
    bool _hasEntries = false;
    bool _followsKey = false;
    JSONWriteError _error{};
};

} // namespace selvane

template <>
struct std::is_error_code_enum<selvane::JSONWriteError> : std::true_type {};
