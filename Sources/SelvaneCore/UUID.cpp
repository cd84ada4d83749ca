#include "SelvaneCore/UUID.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace selvane {

namespace {

constexpr std::size_t textLength = 36;

bool hasDashBefore(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

/// The value of a hexadecimal digit, or 16 for any other character.
constexpr auto digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(16);
    for (std::uint8_t digit = 0; digit < 10; ++digit)
        values[std::size_t{'0'} + digit] = digit;
    for (std::uint8_t digit = 0; digit < 6; ++digit) {
        values[std::size_t{'A'} + digit] = static_cast<std::uint8_t>(10 + digit);
        values[std::size_t{'a'} + digit] = static_cast<std::uint8_t>(10 + digit);
    }
    return values;
}();

std::uint8_t digitValue(char character) {
    return digitValues[static_cast<unsigned char>(character)];
}

} // namespace

UUID UUID::random() {
    Bytes bytes;
    // The system's random source fails only where it does not exist; an identifier that repeats would mix
    // up records.
    if (::getentropy(bytes.data(), bytes.size()) != 0)
        std::abort();
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80);
    return UUID(bytes);
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != textLength)
        return std::nullopt;
    Bytes bytes;
    const char* next = text.data();
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (hasDashBefore(index) && *next++ != '-')
            return std::nullopt;
        const unsigned high = digitValue(*next++);
        const unsigned low = digitValue(*next++);
        if ((high | low) > 15)
            return std::nullopt;
        bytes[index] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return UUID(bytes);
}

std::string UUID::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (std::size_t index = 0; index < _bytes.size(); ++index) {
        if (hasDashBefore(index))
            text += '-';
        text += digits[_bytes[index] >> 4];
        text += digits[_bytes[index] & 0xf];
    }
    return text;
}

} // namespace selvane

std::size_t std::hash<selvane::UUID>::operator()(const selvane::UUID& id) const noexcept {
    // Identifiers from files need not be random in any half.
    std::uint64_t halves[2];
    std::memcpy(halves, id.bytes().data(), sizeof halves);
    return static_cast<std::size_t>((halves[0] * 0x9e3779b97f4a7c15U) ^ (halves[1] + (halves[0] >> 32)));
}
