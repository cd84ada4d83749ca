#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/UUID.h"

#include <tl/expected.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane {

/// Why bytes could not be read as the value that was asked for. Holds no text of its own: an error about keys
/// that only the document tells, as those of settings, is to be described while the document lives.
struct JSONError {
    /// What is wrong: a short phrase that lives as long as the program.
    const char* problem;
    /// Under which key it is wrong, as far as known. Lives as long as the program if it is a key of ours,
    /// else as long as the document.
    std::string_view key = {};
    /// What the document has in place of what was expected, where the phrase asks for it; lives as long as
    /// the document.
    std::string_view found = {};

    [[nodiscard]] std::string description() const;
};

class JSONElements;
class JSONMembers;

/// Room for one of the parser's small handles, of which only the source file knows the types.
using JSONHandle = std::array<std::uintptr_t, 2>;

/// One value in a `JSONDocument`; a small handle that is valid as long as the document. Each question is
/// answered with absence if the value is of another type.
class JSONValue {
public:
    /// No value at all, as where an object lacks a key.
    JSONValue() = default;

    [[nodiscard]] bool isMissing() const { return _handle == JSONHandle{}; }
    [[nodiscard]] bool isNull() const;
    [[nodiscard]] std::optional<bool> boolean() const;
    /// Any number.
    [[nodiscard]] std::optional<double> number() const;
    /// A number without a fraction, however it is written, that fits.
    [[nodiscard]] std::optional<std::int64_t> integer() const;
    /// Valid as long as the document.
    [[nodiscard]] std::optional<std::string_view> text() const;
    /// Text of the exact form 2026-03-05T14:07:09Z that names a date and a time that exist.
    [[nodiscard]] std::optional<Date> date() const;
    [[nodiscard]] std::optional<UUID> uuid() const;

    /// The values under these keys of an object, missing where there is no such key; of repeated keys the
    /// last. Fastest if the object has its keys in the order of `keys`.
    template <std::size_t count>
    [[nodiscard]] std::optional<std::array<JSONValue, count>>
    members(const std::array<std::string_view, count>& keys) const {
        std::array<JSONValue, count> values;
        if (!findMembers(keys, values))
            return std::nullopt;
        return values;
    }

    /// The elements of an array.
    [[nodiscard]] std::optional<JSONElements> elements() const;

    /// Everything in an object, for keys that are not known beforehand.
    [[nodiscard]] std::optional<JSONMembers> allMembers() const;

private:
    friend struct JSONAccess;

    bool findMembers(std::span<const std::string_view> keys, std::span<JSONValue> values) const;

    /// Zeros for no value at all: a handle of the parser's points into the document, so it is never that.
    JSONHandle _handle{};
};

/// The elements of an array, one after another. Valid as long as the document.
///
///     while (const auto element = elements.next())
class JSONElements {
public:
    /// How many there are; a lower bound in an array of more than 16 million.
    [[nodiscard]] std::size_t size() const { return _size; }
    /// The next element; absent after the last.
    [[nodiscard]] std::optional<JSONValue> next();

private:
    friend class JSONValue;
    JSONElements(JSONHandle first, JSONHandle end, std::size_t size) : _next(first), _end(end), _size(size) {}

    JSONHandle _next;
    JSONHandle _end;
    std::size_t _size;
};

/// One key of an object and the value under it. Valid as long as the document.
struct JSONMember {
    std::string_view key;
    JSONValue value;
};

/// The members of an object, one after another in the order of the text. A key that is repeated comes as
/// often as it stands there, and its last value is the one that counts. Valid as long as the document.
///
///     while (const auto member = members.next())
class JSONMembers {
public:
    /// The next member; absent after the last.
    [[nodiscard]] std::optional<JSONMember> next();

private:
    friend class JSONValue;
    JSONMembers(JSONHandle first, JSONHandle end) : _next(first), _end(end) {}

    JSONHandle _next;
    JSONHandle _end;
};

/// A JSON text that was read and checked to the last byte.
///
/// Refused are: bytes that are not UTF-8, a byte order mark, halves of surrogate pairs, numbers that are not
/// JSON's or that fit neither 64 bits nor a finite float, nesting of more than 1,024 levels, and anything but
/// white space after the value.
class JSONDocument {
public:
    [[nodiscard]] static tl::expected<JSONDocument, JSONError> parse(const FileContents& contents);

    JSONDocument(JSONDocument&&) noexcept;
    JSONDocument& operator=(JSONDocument&&) noexcept;
    ~JSONDocument();

    [[nodiscard]] JSONValue root() const { return _root; }

private:
    struct Parser;
    explicit JSONDocument(std::unique_ptr<Parser> parser);

    std::unique_ptr<Parser> _parser;
    JSONValue _root;
};

using JSONOutcome = tl::expected<void, JSONError>;

/// Each `decode` reads one type strictly; after a failure `into` is of no use.
[[nodiscard]] JSONOutcome decode(JSONValue value, bool& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, int& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, std::int64_t& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, double& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, Seconds& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, std::string& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, Date& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, UUID& into);

/// The most elements that room is made for before any is read: a text of a few bytes for each, none of them
/// good, must not ask for gigabytes.
inline constexpr std::size_t mostElementsReserved = std::size_t{1} << 16;

/// An array of which every element must be good.
template <typename Element>
[[nodiscard]] JSONOutcome decode(JSONValue value, std::vector<Element>& into) {
    auto elements = value.elements();
    if (!elements)
        return tl::unexpected(JSONError{"not an array"});
    into.clear();
    into.reserve(std::min(elements->size(), mostElementsReserved));
    while (const auto element = elements->next()) {
        if (JSONOutcome outcome = decode(*element, into.emplace_back()); !outcome)
            return outcome;
    }
    return {};
}

/// Reads the fields of one object, and remembers the first that failed. The keys live as long as the program.
///
///     JSONRecord record(value, keys);
///     record.required(0, session.id);
///     return record.outcome();
template <std::size_t count>
class JSONRecord {
public:
    JSONRecord(JSONValue value, const std::array<std::string_view, count>& keys)
        : _keys(keys), _values(value.members(keys)) {
        if (!_values)
            _outcome = tl::unexpected(JSONError{"not an object"});
    }

    /// The field under the key of that index.
    template <typename Field>
    void required(std::size_t index, Field& into) {
        if (!_outcome)
            return;
        if (JSONOutcome outcome = decode((*_values)[index], into); !outcome)
            fail(index, outcome.error());
    }

    /// The same for a field that may be missing or null.
    template <typename Field>
    void optional(std::size_t index, std::optional<Field>& into) {
        if (!_outcome)
            return;
        const JSONValue value = (*_values)[index];
        if (value.isMissing() || value.isNull())
            into.reset();
        else
            required(index, into.emplace());
    }

    [[nodiscard]] const JSONOutcome& outcome() const { return _outcome; }

private:
    void fail(std::size_t index, JSONError error) {
        // The innermost key tells most.
        if (error.key.empty())
            error.key = _keys[index];
        _outcome = tl::unexpected(error);
    }

    const std::array<std::string_view, count>& _keys;
    std::optional<std::array<JSONValue, count>> _values;
    JSONOutcome _outcome;
};

} // namespace selvane
