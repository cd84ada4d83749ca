#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DayKey.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// How the rolling backups are named, and which of them are old enough to go. All names end in ".json" and
/// tell local time. Pure: nothing here touches the disk.
namespace selvane::BackupRotation {

/// What the names of one kind of backup begin with, and how many of that kind are kept.
inline constexpr std::string_view dailyPrefix = "daily-";
inline constexpr std::size_t keepDaily = 14;
inline constexpr std::string_view preUpdatePrefix = "pre-update-";
inline constexpr std::size_t keepPreUpdate = 3;
/// Copies made before something dangerous. All reasons share the one count.
inline constexpr std::string_view safetyPrefix = "before-";
inline constexpr std::size_t keepSafety = 5;

/// As in "daily-2026-03-05.json".
[[nodiscard]] std::string dailyName(const DayKey& day);
/// As in "pre-update-1.4.2-2026-03-05.json", with the plain calendar day of `date`. Of `build` remain
/// letters, numbers and full stops, at most 20 user-perceived characters of them.
[[nodiscard]] std::string preUpdateName(std::string_view build, Date date, const Calendar& calendar);
/// As in "before-import-2026-03-05-140709.json".
[[nodiscard]] std::string safetyName(std::string_view reason, Date date, const Calendar& calendar);

/// Whether the name tells a moment after `date`, as names do that a clock gave that ran ahead.
[[nodiscard]] bool isAhead(std::string_view name, Date date, const Calendar& calendar);

/// Which of the files of these names may go: of each kind all but the newest, daily ones first, then those
/// made before updates, then safety copies, each kind from the oldest on. Age is the date at the end of the
/// name; a name without one is older than any. Names of no kind are never among them.
[[nodiscard]] std::vector<std::string> namesToDelete(const std::vector<std::string>& names);

} // namespace selvane::BackupRotation
