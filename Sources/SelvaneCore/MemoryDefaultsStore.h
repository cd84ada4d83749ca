#pragma once

#include "SelvaneCore/DefaultsStore.h"

#include <functional>
#include <map>

namespace selvane {

/// Keeps values for as long as it lives.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override {
        const auto found = _texts.find(key);
        return found == _texts.end() ? std::nullopt : std::optional(found->second);
    }

    void setText(std::string_view key, std::optional<std::string> value) override {
        if (value)
            _texts.insert_or_assign(std::string(key), std::move(*value));
        else if (const auto found = _texts.find(key); found != _texts.end())
            _texts.erase(found);
    }

private:
    std::map<std::string, std::string, std::less<>> _texts;
};

} // namespace selvane
