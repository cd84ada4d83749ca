#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/JSONWriter.h"

#include <tl/expected.hpp>

#include <compare>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// The notes of one release, identified by its version.
struct ChangelogEntry {
    /// Dotted numbers, as in "1.4.2".
    std::string version;
    /// The release date as in "2026-03-05". Not checked.
    std::string date;
    /// What is new, one line each; "new" in files.
    std::vector<std::string> whatIsNew = {};
    /// What got better.
    std::vector<std::string> improved = {};
    /// What was repaired.
    std::vector<std::string> fixed = {};

    /// Noon of the release date. Absent if `date` doesn't hold exactly three numbers between its dashes, or
    /// one that no instant reaches. A month or day that doesn't exist counts on into the next: 30 February is
    /// the 1st or 2nd of March.
    [[nodiscard]] std::optional<Date> releaseDate(const Calendar& calendar) const;

    friend bool operator==(const ChangelogEntry&, const ChangelogEntry&) = default;
};

/// Writes all keys, those of empty lists too.
void encode(JSONWriter& writer, const ChangelogEntry& entry);
/// A list that is missing or null is read as empty.
[[nodiscard]] JSONOutcome decode(JSONValue value, ChangelogEntry& into);

/// The release notes that come with the program. Any thread.
namespace Changelog {

/// Reads a JSON array of entries and puts the newest version first; of equal versions the order stays.
[[nodiscard]] tl::expected<std::vector<ChangelogEntry>, JSONError> decode(std::string_view data);

/// The order of two versions by the numbers between their dots, so that 1.10 comes after 1.9. A number is an
/// optional sign and ASCII digits of 64 bits; anything else between dots, as "2-beta", counts as 0. Empty
/// pieces play no part, and missing ones count as 0, so that 1.2 and 1.2.0 are equal.
[[nodiscard]] std::strong_ordering compare(std::string_view a, std::string_view b);

/// The entries of versions after `after`, in their order; all of them if it is absent.
[[nodiscard]] std::vector<ChangelogEntry> entries(std::span<const ChangelogEntry> all,
                                                  std::optional<std::string_view> after);

} // namespace Changelog

} // namespace selvane
