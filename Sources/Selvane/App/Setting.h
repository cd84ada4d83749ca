#pragma once

#include "Selvane/App/SettingChoices.h"
#include "Selvane/App/SettingRules.h"
#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/SettingValue.h"
#include "SelvaneCore/Signal.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane {

class AnySetting;

/// What settings are members of. Knows them in the order in which they are declared. Main thread.
class SettingTable {
public:
    /// The store outlives the table.
    explicit SettingTable(DefaultsStore& defaults) : _defaults(defaults) {}
    SettingTable(const SettingTable&) = delete;
    SettingTable& operator=(const SettingTable&) = delete;

    [[nodiscard]] DefaultsStore& defaults() const { return _defaults; }

    /// Emitted after a value has really changed and was stored, before the hook runs.
    Signal<> changed;

protected:
    ~SettingTable() = default;

    [[nodiscard]] const std::vector<AnySetting*>& all() const { return _all; }

private:
    friend class AnySetting;

    DefaultsStore& _defaults;
    std::vector<AnySetting*> _all;
};

/// A setting of any type, as its table sees it.
class AnySetting {
public:
    AnySetting(const AnySetting&) = delete;
    AnySetting& operator=(const AnySetting&) = delete;

    /// What it is stored under. Lives as long as the program.
    [[nodiscard]] std::string_view key() const { return _key; }

    /// Takes the stored value, or the default if there is none that serves. Tells nobody.
    virtual void load() = 0;
    /// Assigns a value that holds to the rule, if this is the step for that and the present value doesn't.
    virtual void sanitize(SettingRepair step) = 0;
    /// Assigns the value that the same setting of another table has, if it differs.
    virtual void take(const AnySetting& same) = 0;

protected:
    AnySetting(SettingTable& table, std::string_view key) : _table(table), _key(key) {
        table._all.push_back(this);
    }
    virtual ~AnySetting() = default;

    [[nodiscard]] const SettingTable& table() const { return _table; }

private:
    SettingTable& _table;
    std::string_view _key;
};

/// The choice that a stored text stands for.
template <SettingChoice Choice>
[[nodiscard]] std::optional<Choice> choiceFromStored(std::string_view text) {
    return fromRawValue<Choice>(text);
}
/// There was a time when the status area showed only a ring.
template <>
[[nodiscard]] inline std::optional<MenuBarDisplay> choiceFromStored(std::string_view text) {
    return text == "ring" ? MenuBarDisplay::iconOnly : fromRawValue<MenuBarDisplay>(text);
}

/// One setting: read by calling it, assigned with `set`. `T` is a boolean, an int, a float, a text, a list of
/// texts, or a choice, which is stored as its name.
template <typename T>
class Setting final : public AnySetting {
public:
    /// May be empty while it is needed by nobody.
    using Hook = std::function<void()>;

    /// `hook` belongs to the table, too.
    Setting(SettingTable& table, std::string_view key, T initial, Hook* hook = nullptr)
        : Setting(table, key, std::move(initial), SettingRule<T>{}, hook) {}
    Setting(SettingTable& table, std::string_view key, T initial, const SettingRule<T>& rule,
            Hook* hook = nullptr)
        : AnySetting(table, key), _initial(std::move(initial)), _value(_initial), _rule(rule), _hook(hook) {}

    [[nodiscard]] const T& operator()() const { return _value; }

    /// Takes the value as it is and stores it. Also when it is the value that it has, the hook is called; the
    /// table's `changed` is emitted only if it differs.
    void set(T value) {
        const bool differs = !isSame(value, _value);
        _value = std::move(value);
        table().defaults().set(key(), stored(_value));
        if (differs)
            table().changed.emit();
        if (_hook && *_hook)
            (*_hook)();
    }

    void load() override {
        const std::optional<SettingValue> found = table().defaults().value(key());
        std::optional<T> read = found ? fromStored(*found) : std::nullopt;
        _value = read ? std::move(*read) : _initial;
    }

    void sanitize(SettingRepair step) override {
        if (_rule.mend && _rule.step == step)
            assignIfOther(_rule.mend(_value, _initial));
    }

    void take(const AnySetting& same) override { assignIfOther(static_cast<const Setting&>(same)()); }

private:
    void assignIfOther(T value) {
        if (!isSame(value, _value))
            set(std::move(value));
    }

    static bool isSame(const T& left, const T& right) {
        // What is not a number differs from itself, but to change it to itself is no change.
        if constexpr (std::same_as<T, double>)
            return left == right || (std::isnan(left) && std::isnan(right));
        else
            return left == right;
    }

    static SettingValue stored(const T& value) {
        if constexpr (SettingChoice<T>)
            return {std::string(rawValue(value))};
        else if constexpr (std::same_as<T, int>)
            return {std::int64_t{value}};
        else
            return {value};
    }

    static std::optional<T> fromStored(const SettingValue& value) {
        if constexpr (SettingChoice<T>) {
            const auto text = value.text();
            return text ? choiceFromStored<T>(*text) : std::nullopt;
        } else if constexpr (std::same_as<T, int>) {
            const auto number = value.integer();
            using Limits = std::numeric_limits<int>;
            return number ? std::optional(static_cast<int>(
                                std::clamp<std::int64_t>(*number, Limits::min(), Limits::max())))
                          : std::nullopt;
        } else if constexpr (std::same_as<T, bool>) {
            return value.boolean();
        } else if constexpr (std::same_as<T, double>) {
            return value.number();
        } else if constexpr (std::same_as<T, std::string>) {
            return value.text();
        } else {
            return value.texts();
        }
    }

    const T _initial;
    T _value;
    const SettingRule<T> _rule;
    Hook* const _hook;
};

} // namespace selvane
