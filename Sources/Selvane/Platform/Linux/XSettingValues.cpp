#include "Selvane/Platform/Linux/XSettingValues.h"

#include <cstddef>
#include <utility>

namespace selvane {

namespace {

enum class ByteOrder : std::uint8_t { leastFirst = 0, mostFirst = 1 };
enum class Type : std::uint8_t { integer = 0, string = 1, color = 2 };

constexpr std::size_t colorLength = 8;

/// Takes numbers and texts from the front of the bytes. Once these end too early, every further answer is
/// zero or empty, and `isWhole` is false.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : _rest(bytes) {}

    [[nodiscard]] bool isWhole() const { return _isWhole; }

    void setOrder(ByteOrder order) { _order = order; }

    std::uint32_t number(std::size_t length) {
        const auto bytes = take(length);
        std::uint32_t value = 0;
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            const std::size_t place = _order == ByteOrder::mostFirst ? bytes.size() - 1 - index : index;
            value |= static_cast<std::uint32_t>(bytes[index]) << (8 * place);
        }
        return value;
    }

    /// A text and the bytes that fill it up to a multiple of four.
    std::string text(std::size_t length) {
        const auto bytes = take(length);
        skip((4 - length % 4) % 4);
        return {bytes.begin(), bytes.end()};
    }

    void skip(std::size_t length) { take(length); }

private:
    std::span<const std::uint8_t> take(std::size_t length) {
        _isWhole = _isWhole && length <= _rest.size();
        if (!_isWhole)
            return {};
        const auto taken = _rest.first(length);
        _rest = _rest.subspan(length);
        return taken;
    }

    std::span<const std::uint8_t> _rest;
    ByteOrder _order = ByteOrder::leastFirst;
    bool _isWhole = true;
};

} // namespace

std::optional<XSettingValues> parseXSettings(std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);

    // 1. The head: the order of the bytes, the serial of the whole, the number of settings.
    const std::uint32_t order = reader.number(1);
    if (order > static_cast<std::uint32_t>(ByteOrder::mostFirst))
        return std::nullopt;
    reader.setOrder(static_cast<ByteOrder>(order));
    reader.skip(3);
    reader.skip(4);
    const std::uint32_t count = reader.number(4);

    // 2. Each setting: its type, its name, the serial of its last change, its value.
    XSettingValues values;
    for (std::uint32_t index = 0; index < count && reader.isWhole(); ++index) {
        const std::uint32_t type = reader.number(1);
        reader.skip(1);
        std::string name = reader.text(reader.number(2));
        reader.skip(4);
        switch (type) {
        case static_cast<std::uint32_t>(Type::integer):
            values.insert_or_assign(std::move(name), static_cast<std::int32_t>(reader.number(4)));
            break;
        case static_cast<std::uint32_t>(Type::string):
            values.insert_or_assign(std::move(name), reader.text(reader.number(4)));
            break;
        case static_cast<std::uint32_t>(Type::color):
            reader.skip(colorLength);
            break;
        default:
            return std::nullopt;
        }
    }
    return reader.isWhole() ? std::optional(std::move(values)) : std::nullopt;
}

} // namespace selvane
