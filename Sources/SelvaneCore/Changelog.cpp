#include "SelvaneCore/Changelog.h"

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/ModelsCoding.h"

#include <absl/time/civil_time.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <system_error>
#include <utility>

namespace selvane {

namespace {

/// The pieces of a text between separators, one after another, without empty ones.
class Pieces {
public:
    Pieces(std::string_view text, char separator) : _rest(text), _separator(separator) {}

    /// The next piece; absent after the last.
    std::optional<std::string_view> next() {
        const std::size_t start = _rest.find_first_not_of(_separator);
        if (start == std::string_view::npos)
            return std::nullopt;
        _rest.remove_prefix(start);
        const std::string_view piece = _rest.substr(0, _rest.find(_separator));
        _rest.remove_prefix(piece.size());
        return piece;
    }

private:
    std::string_view _rest;
    char _separator;
};

/// The decimal number that is all of `text`: an optional sign and digits that fit 64 bits.
std::optional<std::int64_t> integer(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stopped == end ? std::optional(number) : std::nullopt;
}

std::int64_t versionNumber(std::optional<std::string_view> piece) {
    return piece ? integer(*piece).value_or(0) : 0;
}

bool fitsInt(std::int64_t number) {
    return number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
}

} // namespace

std::optional<Date> ChangelogEntry::releaseDate(const Calendar& calendar) const {
    constexpr int noonHour = 12;
    // 1.
    std::vector<std::int64_t> numbers;
    Pieces pieces(date, '-');
    while (const auto piece = pieces.next()) {
        if (const auto number = integer(*piece))
            numbers.push_back(*number);
    }
    // 2. Beyond 32 bits no year is reached by an instant, and no month or day is meant.
    if (numbers.size() != 3 || !std::ranges::all_of(numbers, fitsInt))
        return std::nullopt;
    // 3.
    const Date noon = calendar.date(absl::CivilSecond(numbers[0], numbers[1], numbers[2], noonHour));
    return noon == Date::max() ? std::nullopt : std::optional(noon);
}

void encode(JSONWriter& writer, const ChangelogEntry& entry) {
    writer.beginObject();
    writer.key("date");
    writer.value(entry.date);
    writer.key("fixed");
    encode(writer, entry.fixed);
    writer.key("improved");
    encode(writer, entry.improved);
    writer.key("new");
    encode(writer, entry.whatIsNew);
    writer.key("version");
    writer.value(entry.version);
    writer.endObject();
}

JSONOutcome decode(JSONValue value, ChangelogEntry& into) {
    using Lines = std::vector<std::string>;
    static constexpr std::array<std::string_view, 5> keys{"date", "fixed", "improved", "new", "version"};
    std::optional<Lines> fixed;
    std::optional<Lines> improved;
    std::optional<Lines> whatIsNew;
    JSONRecord record(value, keys);
    record.required(0, into.date);
    record.optional(1, fixed);
    record.optional(2, improved);
    record.optional(3, whatIsNew);
    record.required(4, into.version);
    into.fixed = std::move(fixed).value_or(Lines{});
    into.improved = std::move(improved).value_or(Lines{});
    into.whatIsNew = std::move(whatIsNew).value_or(Lines{});
    return record.outcome();
}

tl::expected<std::vector<ChangelogEntry>, JSONError> Changelog::decode(std::string_view data) {
    const auto document = JSONDocument::parse(FileContents::copy(data));
    if (!document)
        return tl::unexpected(document.error());
    std::vector<ChangelogEntry> entries;
    if (const JSONOutcome outcome = selvane::decode(document->root(), entries); !outcome)
        return tl::unexpected(outcome.error());
    std::ranges::stable_sort(entries, [](const ChangelogEntry& left, const ChangelogEntry& right) {
        return std::is_gt(compare(left.version, right.version));
    });
    return entries;
}

std::strong_ordering Changelog::compare(std::string_view a, std::string_view b) {
    // 1.
    Pieces left(a, '.');
    Pieces right(b, '.');
    while (true) {
        const auto leftPiece = left.next();
        const auto rightPiece = right.next();
        // 5.
        if (!leftPiece && !rightPiece)
            return std::strong_ordering::equal;
        // 2. to 4.
        const auto order = versionNumber(leftPiece) <=> versionNumber(rightPiece);
        if (std::is_neq(order))
            return order;
    }
}

std::vector<ChangelogEntry> Changelog::entries(std::span<const ChangelogEntry> all,
                                               std::optional<std::string_view> after) {
    std::vector<ChangelogEntry> result;
    std::ranges::copy_if(all, std::back_inserter(result), [after](const ChangelogEntry& entry) {
        return !after || std::is_gt(compare(entry.version, *after));
    });
    return result;
}

} // namespace selvane
