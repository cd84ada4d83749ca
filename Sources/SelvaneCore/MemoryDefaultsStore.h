#pragma once

#include "SelvaneCore/DefaultsStore.h"

#include <string>
#include <utility>

namespace selvane {

/// Keeps values for as long as it lives.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    MemoryDefaultsStore() = default;
    explicit MemoryDefaultsStore(SettingValues values) : _values(std::move(values)) {}

    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override {
        const auto found = _values.find(key);
        return found == _values.end() ? std::nullopt : std::optional(found->second);
    }

    void set(std::string_view key, std::optional<SettingValue> value) override {
        if (value)
            _values.insert_or_assign(std::string(key), std::move(*value));
        else if (const auto found = _values.find(key); found != _values.end())
            _values.erase(found);
    }

    [[nodiscard]] const SettingValues& values() const { return _values; }

private:
    SettingValues _values;
};

} // namespace selvane
