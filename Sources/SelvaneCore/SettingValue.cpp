#include "SelvaneCore/SettingValue.h"

namespace selvane {

namespace {

template <typename Payload>
std::optional<Payload> get(const SettingValue& value) {
    const auto* const payload = std::get_if<Payload>(&value.payload);
    return payload ? std::optional(*payload) : std::nullopt;
}

} // namespace

std::optional<bool> SettingValue::boolean() const {
    return get<bool>(*this);
}

std::optional<std::int64_t> SettingValue::integer() const {
    const auto* const number = std::get_if<double>(&payload);
    if (!number)
        return get<std::int64_t>(*this);
    // 2^63, the first float beyond the integers. Not a number fails both comparisons.
    constexpr double end = 9223372036854775808.0;
    if (!(*number >= -end && *number < end))
        return std::nullopt;
    const auto whole = static_cast<std::int64_t>(*number);
    return static_cast<double>(whole) == *number ? std::optional(whole) : std::nullopt;
}

std::optional<double> SettingValue::number() const {
    if (const auto* const integer = std::get_if<std::int64_t>(&payload))
        return static_cast<double>(*integer);
    return get<double>(*this);
}

std::optional<std::string> SettingValue::text() const {
    return get<std::string>(*this);
}

std::optional<SettingValue::Texts> SettingValue::texts() const {
    return get<Texts>(*this);
}

} // namespace selvane
