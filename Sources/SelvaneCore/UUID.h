#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace selvane {

/// A 128-bit identifier of RFC 4122. A value; ordered and compared by its bytes.
class UUID {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    /// The nil identifier, all bits zero.
    constexpr UUID() = default;
    constexpr explicit UUID(const Bytes& bytes) : _bytes(bytes) {}

    /// A new version 4 identifier from the system's random source.
    [[nodiscard]] static UUID random();

    /// Reads the canonical form, 8-4-4-4-12 hexadecimal digits of either case; anything else is absent.
    [[nodiscard]] static std::optional<UUID> parse(std::string_view text);

    /// The canonical form in upper case.
    [[nodiscard]] std::string text() const;

    [[nodiscard]] const Bytes& bytes() const { return _bytes; }

    friend auto operator<=>(const UUID&, const UUID&) = default;

    /// Differs from one run of the program to the next, so that no file can hold ids that all collide.
    template <typename Hash>
    friend Hash AbslHashValue(Hash hash, const UUID& id) {
        return Hash::combine_contiguous(std::move(hash), id._bytes.data(), id._bytes.size());
    }

private:
    Bytes _bytes{};
};

} // namespace selvane

template <>
struct std::hash<selvane::UUID> {
    std::size_t operator()(const selvane::UUID& id) const noexcept;
};
