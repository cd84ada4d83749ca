#include "Fuzz/Require.h"
#include "SelvaneCore/Changelog.h"
#include "SelvaneCore/ModelsCoding.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

void requireOrder(std::string_view a, std::string_view b) {
    const std::strong_ordering order = Changelog::compare(a, b);
    require(Changelog::compare(b, a) == (0 <=> order));
    require(std::is_eq(Changelog::compare(a, a)));
    require(std::is_eq(Changelog::compare(a, std::string(a) + "..0")));
}

/// A release date is a noon, wherever it is read.
void requireDate(const ChangelogEntry& entry) {
    static const std::optional<Calendar> berlin = Calendar::named("Europe/Berlin");
    for (const Calendar& calendar : {Calendar::utc(), berlin.value_or(Calendar::utc())}) {
        if (const std::optional<Date> date = entry.releaseDate(calendar)) {
            const absl::CivilSecond noon = calendar.civil(*date);
            require(noon.hour() == 12 && noon.minute() == 0 && noon.second() == 0);
        }
    }
}

std::string written(const std::vector<ChangelogEntry>& entries) {
    JSONWriter writer;
    encode(writer, entries);
    const auto text = writer.finish();
    require(text.has_value());
    return std::string(*text);
}

/// The entries are sorted, can be written, and are read as the same.
void requireEntries(const std::vector<ChangelogEntry>& entries) {
    require(std::ranges::is_sorted(entries, [](const ChangelogEntry& left, const ChangelogEntry& right) {
        return std::is_gt(Changelog::compare(left.version, right.version));
    }));
    const auto again = Changelog::decode(written(entries));
    require(again.has_value() && *again == entries);
    require(Changelog::entries(entries, std::nullopt) == entries);
    if (entries.empty())
        return;
    requireOrder(entries.front().version, entries.back().version);
    // What comes after a version stands before it.
    const std::string& version = entries[entries.size() / 2].version;
    const std::vector<ChangelogEntry> later = Changelog::entries(entries, version);
    require(std::ranges::equal(later, std::span(entries).first(later.size())));
    require(std::is_eq(Changelog::compare(entries[later.size()].version, version)));
    for (const ChangelogEntry& entry : entries)
        requireDate(entry);
}

} // namespace
} // namespace selvane

/// Any bytes as release notes, as a date, and as two versions with a line break between.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto entries = Changelog::decode(bytes))
        requireEntries(*entries);
    requireDate({"", std::string(bytes)});
    const std::size_t line = bytes.find('\n');
    if (line != std::string_view::npos)
        requireOrder(bytes.substr(0, line), bytes.substr(line + 1));
    return 0;
}
