#include "SelvaneCore/SettingValueCoding.h"

#include <array>
#include <map>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

/// The names of the types in files, in the order of the payload's.
constexpr std::array<std::string_view, 5> typeNames{"bool", "int", "double", "string", "strings"};
static_assert(typeNames.size() == std::variant_size_v<decltype(SettingValue::payload)>);

template <typename Writer, typename Payload>
void writePayload(Writer& writer, const Payload& payload) {
    writer.value(payload);
}

template <typename Writer>
void writePayload(Writer& writer, const SettingValue::Texts& texts) {
    writer.beginArray();
    for (const std::string& text : texts)
        writer.value(text);
    writer.endArray();
}

JSONOutcome decodePayload(std::string_view type, JSONValue value, SettingValue& into) {
    if (type == "bool")
        return decode(value, into.payload.emplace<bool>());
    if (type == "int")
        return decode(value, into.payload.emplace<std::int64_t>());
    if (type == "double")
        return decode(value, into.payload.emplace<double>());
    if (type == "string")
        return decode(value, into.payload.emplace<std::string>());
    if (type == "strings")
        return decode(value, into.payload.emplace<SettingValue::Texts>());
    return tl::unexpected(JSONError{"Unknown setting type ", {}, type});
}

} // namespace

template <typename Writer>
void encode(Writer& writer, const SettingValue& value) {
    writer.beginObject();
    writer.key("type");
    writer.value(typeNames[value.payload.index()]);
    writer.key("value");
    std::visit([&writer](const auto& payload) { writePayload(writer, payload); }, value.payload);
    writer.endObject();
}

template <typename Writer>
void encode(Writer& writer, const SettingValues& values) {
    writer.beginObject();
    for (const auto& [key, value] : values) {
        writer.anyKey(key);
        encode(writer, value);
    }
    writer.endObject();
}

bool hasForm(std::string_view key, const SettingValue& value) {
    JSONChecker checker;
    checker.anyKey(key);
    encode(checker, value);
    return checker.outcome().has_value();
}

JSONOutcome decode(JSONValue value, SettingValue& into) {
    static constexpr std::array<std::string_view, 2> keys{"type", "value"};
    const auto members = value.members(keys);
    if (!members)
        return tl::unexpected(JSONError{value.isMissing() ? "missing" : "not an object"});
    const auto type = (*members)[0].text();
    if (!type)
        return tl::unexpected(JSONError{"without a setting type"});
    return decodePayload(*type, (*members)[1], into);
}

JSONOutcome decode(JSONValue value, SettingValues& into) {
    auto members = value.allMembers();
    if (!members)
        return tl::unexpected(JSONError{value.isMissing() ? "missing" : "not an object"});
    // What we wrote comes in the order of its keys, so that each has its place at the end.
    std::map<std::string_view, JSONValue> last;
    while (const auto member = members->next())
        last.insert_or_assign(last.end(), member->key, member->value);

    into.clear();
    for (const auto& [key, setting] : last) {
        SettingValue& read = into.emplace_hint(into.end(), key, SettingValue{})->second;
        if (JSONOutcome outcome = decode(setting, read); !outcome) {
            outcome.error().key = key;
            return outcome;
        }
    }
    return {};
}

template void encode(JSONWriter&, const SettingValue&);
template void encode(JSONChecker&, const SettingValue&);
template void encode(JSONWriter&, const SettingValues&);
template void encode(JSONChecker&, const SettingValues&);

} // namespace selvane
