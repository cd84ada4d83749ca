#include "SelvaneCore/JSONReader.h"

#include "SelvaneCore/HugePages.h"
#include "SelvaneCore/Text.h"

#include <simdjson.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <type_traits>
#include <utility>

namespace selvane {

namespace {

using Element = simdjson::dom::element;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t deepestNesting = 1024;

JSONOutcome wrong(JSONValue value, const char* problem) {
    return tl::unexpected(JSONError{value.isMissing() ? "missing" : problem});
}

/// The number of `length` decimal digits at `text`, or -1 if they aren't all digits.
int decimal(const char* text, int length) {
    int number = 0;
    for (int index = 0; index < length; ++index) {
        const char character = text[index];
        if (character < '0' || character > '9')
            return -1;
        number = number * 10 + (character - '0');
    }
    return number;
}

std::optional<Date> parseDate(std::string_view text) {
    using namespace std::chrono;
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != form.size())
        return std::nullopt;
    for (const std::size_t index : {4U, 7U, 10U, 13U, 16U, 19U}) {
        if (text[index] != form[index])
            return std::nullopt;
    }
    const int yearNumber = decimal(text.data(), 4);
    const int monthNumber = decimal(text.data() + 5, 2);
    const int dayNumber = decimal(text.data() + 8, 2);
    const int hour = decimal(text.data() + 11, 2);
    const int minute = decimal(text.data() + 14, 2);
    const int second = decimal(text.data() + 17, 2);
    if ((yearNumber | monthNumber | dayNumber | hour | minute | second) < 0)
        return std::nullopt;
    const year_month_day civil{year{yearNumber}, month{static_cast<unsigned>(monthNumber)},
                               day{static_cast<unsigned>(dayNumber)}};
    if (!civil.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return sys_days{civil} + hours{hour} + minutes{minute} + seconds{second};
}

template <typename Value>
JSONOutcome store(JSONValue value, const std::optional<Value>& found, Value& into, const char* problem) {
    if (!found)
        return wrong(value, problem);
    into = *found;
    return {};
}

} // namespace

/// Keeps the parser's handles in ours and gives them back. What is in a handle is the parser's own affair.
struct JSONAccess {
    template <typename Handle>
    static JSONHandle kept(const Handle& handle) {
        static_assert(sizeof(Handle) == sizeof(JSONHandle) && alignof(Handle) <= alignof(JSONHandle));
        static_assert(std::is_trivially_copyable_v<Handle>);
        return std::bit_cast<JSONHandle>(handle);
    }

    /// Gives back what `kept` took, of the same type.
    template <typename Handle>
    static Handle given(const JSONHandle& handle) {
        return std::bit_cast<Handle>(handle);
    }

    static Element element(const JSONValue& value) { return given<Element>(value._handle); }

    static JSONValue value(const Element& element) {
        JSONValue value;
        value._handle = kept(element);
        return value;
    }

    /// The value as the parser's `Type`; absent if it is of another type or missing.
    template <typename Type>
    static std::optional<Type> as(JSONValue value) {
        Type result;
        if (value.isMissing() || element(value).get(result) != simdjson::SUCCESS)
            return std::nullopt;
        return result;
    }
};

std::string JSONError::description() const {
    // Both may come from the document, and may be as long as that.
    constexpr std::size_t longest = 100;
    const std::string text = std::string(problem).append(Text::prefix(found, longest));
    return key.empty() ? text : '"' + std::string(Text::prefix(key, longest)) + "\": " + text;
}

bool JSONValue::isNull() const {
    return !isMissing() && JSONAccess::element(*this).is_null();
}

std::optional<bool> JSONValue::boolean() const {
    return JSONAccess::as<bool>(*this);
}

std::optional<double> JSONValue::number() const {
    return JSONAccess::as<double>(*this);
}

std::optional<std::int64_t> JSONValue::integer() const {
    if (const auto integer = JSONAccess::as<std::int64_t>(*this))
        return integer;
    constexpr double end = 9223372036854775808.0;
    const auto number = JSONAccess::as<double>(*this);
    if (!number || std::trunc(*number) != *number || *number < -end || *number >= end)
        return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

std::optional<std::string_view> JSONValue::text() const {
    return JSONAccess::as<std::string_view>(*this);
}

std::optional<Date> JSONValue::date() const {
    const auto form = text();
    return form ? parseDate(*form) : std::nullopt;
}

std::optional<UUID> JSONValue::uuid() const {
    const auto form = text();
    return form ? UUID::parse(*form) : std::nullopt;
}

bool JSONValue::findMembers(std::span<const std::string_view> keys, std::span<JSONValue> values) const {
    const auto object = JSONAccess::as<simdjson::dom::object>(*this);
    if (!object)
        return false;
    // Files that we wrote have the keys in order, so the first guess is right but for keys that are absent.
    std::size_t guess = 0;
    for (const auto member : *object) {
        for (std::size_t tried = 0; tried < keys.size(); ++tried) {
            const std::size_t index = guess;
            guess = guess + 1 == keys.size() ? 0 : guess + 1;
            if (keys[index] == member.key) {
                values[index] = JSONAccess::value(member.value);
                break;
            }
        }
    }
    return true;
}

std::optional<JSONElements> JSONValue::elements() const {
    const auto array = JSONAccess::as<simdjson::dom::array>(*this);
    if (!array)
        return std::nullopt;
    return JSONElements(JSONAccess::kept(array->begin()), JSONAccess::kept(array->end()), array->size());
}

std::optional<JSONValue> JSONElements::next() {
    using Iterator = simdjson::dom::array::iterator;
    auto iterator = JSONAccess::given<Iterator>(_next);
    if (iterator == JSONAccess::given<Iterator>(_end))
        return std::nullopt;
    const JSONValue element = JSONAccess::value(*iterator);
    _next = JSONAccess::kept(++iterator);
    return element;
}

std::optional<JSONMembers> JSONValue::allMembers() const {
    const auto object = JSONAccess::as<simdjson::dom::object>(*this);
    if (!object)
        return std::nullopt;
    return JSONMembers(JSONAccess::kept(object->begin()), JSONAccess::kept(object->end()));
}

std::optional<JSONMember> JSONMembers::next() {
    using Iterator = simdjson::dom::object::iterator;
    auto iterator = JSONAccess::given<Iterator>(_next);
    if (iterator == JSONAccess::given<Iterator>(_end))
        return std::nullopt;
    const JSONMember member{iterator.key(), JSONAccess::value(iterator.value())};
    _next = JSONAccess::kept(++iterator);
    return member;
}

struct JSONDocument::Parser {
    simdjson::dom::parser parser;
};

JSONDocument::JSONDocument(std::unique_ptr<Parser> parser) : _parser(std::move(parser)) {}
JSONDocument::JSONDocument(JSONDocument&&) noexcept = default;
JSONDocument& JSONDocument::operator=(JSONDocument&&) noexcept = default;
JSONDocument::~JSONDocument() = default;

tl::expected<JSONDocument, JSONError> JSONDocument::parse(const FileContents& contents) {
    static_assert(FileContents::padding >= simdjson::SIMDJSON_PADDING);
    const std::string_view bytes = contents.bytes();
    if (bytes.starts_with(byteOrderMark))
        return tl::unexpected(JSONError{"begins with a byte order mark"});

    JSONDocument document(std::make_unique<Parser>());
    simdjson::dom::parser& parser = document._parser->parser;
    Element root;
    simdjson::error_code error = parser.allocate(bytes.size(), deepestNesting);
    if (error == simdjson::SUCCESS)
        error = parser.doc.allocate(bytes.size());
    if (error == simdjson::SUCCESS) {
        // The buffers are sized for the worst text; the usual one fills the beginning of each.
        preferHugePages(parser.doc.tape.get(), bytes.size());
        preferHugePages(parser.doc.string_buf.get(), bytes.size());
        preferHugePages(parser.implementation->structural_indexes.get(), bytes.size());
        error = parser.parse(bytes.data(), bytes.size(), false).get(root);
    }
    if (error != simdjson::SUCCESS)
        return tl::unexpected(JSONError{simdjson::error_message(error)});
    document._root = JSONAccess::value(root);
    return document;
}

JSONOutcome decode(JSONValue value, bool& into) {
    return store(value, value.boolean(), into, "not a boolean");
}

JSONOutcome decode(JSONValue value, int& into) {
    const auto number = value.integer();
    const bool fits = number && std::in_range<int>(*number);
    return store(value, fits ? std::optional(static_cast<int>(*number)) : std::nullopt, into,
                 "not a whole number of 32 bits");
}

JSONOutcome decode(JSONValue value, std::int64_t& into) {
    return store(value, value.integer(), into, "not a whole number of 64 bits");
}

JSONOutcome decode(JSONValue value, double& into) {
    return store(value, value.number(), into, "not a number");
}

JSONOutcome decode(JSONValue value, Seconds& into) {
    double seconds = 0;
    JSONOutcome outcome = decode(value, seconds);
    into = Seconds{seconds};
    return outcome;
}

JSONOutcome decode(JSONValue value, std::string& into) {
    const auto text = value.text();
    if (!text)
        return wrong(value, "not a text");
    into.assign(*text);
    return {};
}

JSONOutcome decode(JSONValue value, Date& into) {
    return store(value, value.date(), into, "not a date");
}

JSONOutcome decode(JSONValue value, UUID& into) {
    return store(value, value.uuid(), into, "not a UUID");
}

} // namespace selvane
