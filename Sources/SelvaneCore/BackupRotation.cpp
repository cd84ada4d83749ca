#include "SelvaneCore/BackupRotation.h"

#include "SelvaneCore/Text.h"

#include <absl/time/civil_time.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace selvane::BackupRotation {

namespace {

constexpr std::string_view extension = ".json";
constexpr std::size_t maxBuildLength = 20;

std::string cleaned(std::string_view build) {
    std::string result;
    for (const std::string_view character : Text::characters(build)) {
        if (character == "." || Text::isLetterOrNumber(character))
            result += character;
    }
    return std::string(Text::prefix(result, maxBuildLength));
}

std::string dayText(const absl::CivilDay& day) {
    return DayKey(static_cast<int>(day.year()), day.month(), day.day()).description();
}

/// The name between the prefix and the extension.
std::string name(std::string_view prefix, std::string_view middle) {
    return std::string(prefix).append(middle).append(extension);
}

bool hasForm(std::string_view text, std::string_view form) {
    const auto fits = [](char character, char place) {
        return place == 'd' ? character >= '0' && character <= '9' : character == place;
    };
    return std::ranges::equal(text, form, fits);
}

/// The date, or date and time, at the end of a name; empty if there is none.
std::string_view stamp(std::string_view name) {
    name.remove_suffix(extension.size());
    for (const std::string_view form : {"dddd-dd-dd-dddddd", "dddd-dd-dd"}) {
        if (name.size() < form.size())
            continue;
        const std::string_view end = name.substr(name.size() - form.size());
        if (hasForm(end, form))
            return end;
    }
    return {};
}

/// The names of one kind that are past its count, oldest first.
std::vector<std::string> stale(const std::vector<std::string>& names, std::string_view prefix,
                               std::size_t keep) {
    // 1. Those of this kind.
    std::vector<std::string> result;
    std::ranges::copy_if(names, std::back_inserter(result), [prefix](const std::string& name) {
        return name.starts_with(prefix) && name.ends_with(extension);
    });
    // 2. and 3. By age; as texts the stamps are in the order of time, and none comes first.
    std::ranges::stable_sort(result, {}, stamp);
    // 4. All but the newest.
    result.resize(result.size() - std::min(result.size(), keep));
    return result;
}

} // namespace

std::string dailyName(const DayKey& day) {
    return name(dailyPrefix, day.description());
}

std::string preUpdateName(std::string_view build, Date date, const Calendar& calendar) {
    return name(preUpdatePrefix, cleaned(build) + "-" + dayText(absl::CivilDay(calendar.civil(date))));
}

std::string safetyName(std::string_view reason, Date date, const Calendar& calendar) {
    const absl::CivilSecond time = calendar.civil(date);
    std::array<char, 16> clock{};
    std::snprintf(clock.data(), clock.size(), "%02d%02d%02d", time.hour(), time.minute(), time.second());
    return name(safetyPrefix, std::string(reason) + "-" + dayText(absl::CivilDay(time)) + "-" + clock.data());
}

bool isAhead(std::string_view name, Date date, const Calendar& calendar) {
    if (!name.ends_with(extension))
        return false;
    const std::string now = safetyName("", date, calendar);
    return stamp(name) > stamp(now);
}

std::vector<std::string> namesToDelete(const std::vector<std::string>& names) {
    std::vector<std::string> result = stale(names, dailyPrefix, keepDaily);
    std::ranges::move(stale(names, preUpdatePrefix, keepPreUpdate), std::back_inserter(result));
    std::ranges::move(stale(names, safetyPrefix, keepSafety), std::back_inserter(result));
    return result;
}

} // namespace selvane::BackupRotation
