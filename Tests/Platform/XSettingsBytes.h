#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace selvane::test {

/// The bytes of the property _XSETTINGS_SETTINGS, written setting by setting.
///
///     XSettingsBytes(std::endian::little).integer("Gtk/EnableAnimations", 0).bytes()
class XSettingsBytes {
public:
    explicit XSettingsBytes(std::endian order) : _order(order) {}

    XSettingsBytes& integer(const std::string& name, std::int32_t value) {
        head(0, name);
        number(static_cast<std::uint32_t>(value), 4);
        return *this;
    }
    XSettingsBytes& string(const std::string& name, const std::string& value) {
        head(1, name);
        number(static_cast<std::uint32_t>(value.size()), 4);
        text(value);
        return *this;
    }
    XSettingsBytes& color(const std::string& name) {
        head(2, name);
        for (const std::uint32_t part : {0x1122U, 0x3344U, 0x5566U, 0xffffU})
            number(part, 2);
        return *this;
    }
    /// A setting of a type that there isn't.
    XSettingsBytes& unknown(const std::string& name) {
        head(3, name);
        number(0, 4);
        return *this;
    }

    [[nodiscard]] std::vector<std::uint8_t> bytes() const {
        XSettingsBytes whole(_order);
        whole._body = {static_cast<std::uint8_t>(_order == std::endian::big), 0, 0, 0};
        whole.number(7, 4);
        whole.number(_count, 4);
        whole._body.insert(whole._body.end(), _body.begin(), _body.end());
        return whole._body;
    }

private:
    void head(std::uint8_t type, const std::string& name) {
        ++_count;
        _body.push_back(type);
        _body.push_back(0);
        number(static_cast<std::uint32_t>(name.size()), 2);
        text(name);
        number(7, 4);
    }
    void number(std::uint32_t value, unsigned length) {
        for (unsigned index = 0; index < length; ++index) {
            const unsigned place = _order == std::endian::big ? length - 1 - index : index;
            _body.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
        }
    }
    void text(const std::string& value) {
        _body.insert(_body.end(), value.begin(), value.end());
        _body.insert(_body.end(), (4 - value.size() % 4) % 4, 0);
    }

    std::endian _order;
    std::uint32_t _count = 0;
    std::vector<std::uint8_t> _body;
};

} // namespace selvane::test
