#include "SelvaneCore/SelvaneBackup.h"

#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/LossyArray.h"
#include "SelvaneCore/ModelsCoding.h"
#include "SelvaneCore/RecordLimits.h"
#include "SelvaneCore/SettingValueCoding.h"
#include "SelvaneCore/Text.h"

#include <absl/container/flat_hash_set.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <utility>

namespace selvane {

namespace {

using Problem = SelvaneBackup::Problem;

constexpr std::size_t maxVersionLength = 40;

/// Enough to know a document of a later schema without understanding the rest.
struct Header {
    std::string format;
    std::int64_t schemaVersion = 0;
};

JSONOutcome decode(JSONValue value, Header& into) {
    static constexpr std::array<std::string_view, 2> keys{"format", "schemaVersion"};
    JSONRecord record(value, keys);
    record.required(0, into.format);
    record.required(1, into.schemaVersion);
    return record.outcome();
}

/// The contents as they stand in a document of this schema.
struct Raw {
    std::string appVersion;
    std::optional<UUID> currentTaskID;
    Date exportedAt;
    LossyArray<FocusSession> sessions;
    std::optional<SettingValues> settings;
    TaskList tasks;
};

JSONOutcome decode(JSONValue value, Raw& into) {
    static constexpr std::array<std::string_view, 6> keys{"appVersion", "currentTaskID", "exportedAt",
                                                          "sessions",   "settings",      "tasks"};
    JSONRecord record(value, keys);
    record.required(0, into.appVersion);
    record.optional(1, into.currentTaskID);
    record.required(2, into.exportedAt);
    record.required(3, into.sessions);
    record.optional(4, into.settings);
    record.required(5, into.tasks);
    return record.outcome();
}

/// Whether the value could be read in that shape.
template <typename Shape>
bool isRead(JSONValue value, Shape& into) {
    return decode(value, into).has_value();
}

tl::unexpected<Problem> problem(Problem::Kind kind) {
    return tl::unexpected(Problem{.kind = kind});
}

tl::unexpected<Problem> invalid(const char* reason) {
    return tl::unexpected(Problem{.kind = Problem::Kind::invalid, .reason = reason});
}

/// The first record with an id that one before it has, or null.
template <typename Record>
const Record* firstRepeated(const std::vector<Record>& records) {
    absl::flat_hash_set<UUID> ids;
    ids.reserve(records.size());
    const auto repeated = std::ranges::find_if_not(
        records, [&ids](const Record& record) { return ids.insert(record.id).second; });
    return repeated == records.end() ? nullptr : &*repeated;
}

/// Also false for what is not a number.
bool isPossibleLength(Seconds length) {
    return length >= Seconds{0} && length <= RecordLimits::longest;
}

bool isAtMost(std::string_view text, std::size_t length) {
    return Text::prefix(text, length).size() == text.size();
}

bool hasPossibleTimes(const FocusSession& session, Date latestStart) {
    return session.start >= RecordLimits::earliestStart && session.start <= latestStart &&
           session.end >= session.start && isPossibleLength(session.actualSeconds) &&
           isPossibleLength(session.plannedSeconds);
}

bool isPossible(const AppUsage& usage) {
    return isPossibleLength(usage.seconds) && isAtMost(usage.bundleID, RecordLimits::maxAppTextLength) &&
           isAtMost(usage.name, RecordLimits::maxAppTextLength);
}

/// Why a session doesn't validate, or null.
const char* reasonAgainst(const FocusSession& session, Date latestStart) {
    if (!hasPossibleTimes(session, latestStart))
        return "a session with impossible times";
    if (session.apps && !std::ranges::all_of(*session.apps, isPossible))
        return "a session with impossible app times";
    return nullptr;
}

/// Why a task doesn't validate, or null.
const char* reasonAgainst(const TaskItem& task) {
    if (Text::trimmed(task.title).empty() || !isAtMost(task.title, TaskList::maxTitleLength))
        return "a task without a valid title";
    const auto isCount = [](std::int64_t count, std::int64_t most) { return count >= 0 && count <= most; };
    if (!isCount(task.estimatedPomodoros, RecordLimits::maxEstimatedPomodoros) ||
        !isCount(task.completedPomodoros, RecordLimits::maxCompletedPomodoros))
        return "a task with impossible counts";
    return nullptr;
}

/// The records of `added` whose id isn't among those of `present`, appended to them in their order.
template <typename Record>
void appendNew(std::vector<Record>& present, const std::vector<Record>& added) {
    absl::flat_hash_set<UUID> ids;
    for (const Record& record : present)
        ids.insert(record.id);
    std::ranges::copy_if(added, std::back_inserter(present),
                         [&ids](const Record& record) { return !ids.contains(record.id); });
}

std::string counted(std::ptrdiff_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

} // namespace

/// The first thing that is wrong with a document's records.
struct SelvaneBackup::Fault {
    /// A phrase that lives as long as the program.
    const char* reason;
    /// Which record it is, by its place counted from 1 and its id.
    std::string record;

    template <typename Record>
    Fault(const char* why, const char* kind, const std::vector<Record>& records, const Record& faulty)
        : reason(why),
          record(std::string(kind) + " " + std::to_string(&faulty - records.data() + 1) + " (" +
                 faulty.id.text() + ")") {}
};

std::string SelvaneBackup::Problem::errorDescription() const {
    switch (kind) {
    case Kind::newerVersion:
        return "This backup was made by a newer version of Selvane. Update Selvane, then try again.";
    case Kind::invalid:
        return "This backup is damaged (" + reason + ").";
    case Kind::tooLarge:
        return "This file is too large to be a Selvane backup.";
    case Kind::notABackup:
        return "This file isn't a Selvane backup.";
    }
    __builtin_unreachable();
}

SelvaneBackup::SelvaneBackup(std::string appVersionText, Date exportDate, TaskList taskList,
                             std::vector<FocusSession> history, std::optional<UUID> currentTask,
                             SettingValues values)
    : format(formatName),
      schemaVersion(currentSchema),
      appVersion(std::move(appVersionText)),
      exportedAt(exportDate),
      tasks(std::move(taskList)),
      sessions(std::move(history)),
      currentTaskID(currentTask),
      settings(std::move(values)) {}

tl::expected<SelvaneBackup, Problem> SelvaneBackup::decode(const FileContents& data, Date now) {
    // 1. The size, before anything is parsed.
    if (data.bytes().size() > maxFileSize)
        return problem(Problem::Kind::tooLarge);

    // 2. and 3. Whether it is a backup at all.
    const auto document = JSONDocument::parse(data);
    Header header;
    if (!document || !isRead(document->root(), header) || header.format != formatName)
        return problem(Problem::Kind::notABackup);

    // 4. The version, before the rest is understood. Older ones are read like ours.
    if (header.schemaVersion > currentSchema)
        return tl::unexpected(Problem{.kind = Problem::Kind::newerVersion, .version = header.schemaVersion});

    // 5. The contents.
    Raw raw;
    if (!isRead(document->root(), raw))
        return invalid("unreadable contents");

    // 6. The document.
    SelvaneBackup backup(std::string(Text::prefix(raw.appVersion, maxVersionLength)), raw.exportedAt,
                         std::move(raw.tasks), std::move(raw.sessions.elements), raw.currentTaskID,
                         std::move(raw.settings).value_or(SettingValues{}));
    backup.schemaVersion = header.schemaVersion;

    // 7. Its records.
    if (auto valid = backup.validate(now); !valid)
        return tl::unexpected(std::move(valid.error()));
    return backup;
}

tl::expected<std::string, JSONWriteError> SelvaneBackup::encoded() const {
    std::string text;
    JSONWriter writer([&text](std::string_view piece) { text += piece; });
    writer.beginObject();
    writer.key("appVersion");
    writer.value(appVersion);
    if (currentTaskID) {
        writer.key("currentTaskID");
        writer.value(*currentTaskID);
    }
    writer.key("exportedAt");
    writer.value(exportedAt);
    writer.key("format");
    writer.value(format);
    writer.key("schemaVersion");
    writer.value(schemaVersion);
    writer.key("sessions");
    encode(writer, sessions);
    writer.key("settings");
    encode(writer, settings);
    writer.key("tasks");
    encode(writer, tasks);
    writer.endObject();
    const auto rest = writer.finish();
    if (!rest)
        return tl::unexpected(rest.error());
    text += *rest;
    return text;
}

tl::expected<void, Problem> SelvaneBackup::validate(Date now) const {
    if (const auto fault = firstFault(now))
        return invalid(fault->reason);
    return {};
}

std::optional<std::string> SelvaneBackup::firstInvalidRecord(Date now) const {
    const auto fault = firstFault(now);
    if (!fault)
        return std::nullopt;
    return fault->record + ": " + fault->reason;
}

std::optional<SelvaneBackup::Fault> SelvaneBackup::firstFault(Date now) const {
    // 1. and 2. Repeated ids come first, whatever else is wrong.
    if (const FocusSession* const repeated = firstRepeated(sessions))
        return Fault("repeated sessions", "session", sessions, *repeated);
    if (const TaskItem* const repeated = firstRepeated(tasks.items))
        return Fault("repeated tasks", "task", tasks.items, *repeated);

    // 3. The window of possible times.
    const Date latestStart = adding(RecordLimits::mostAhead, now);

    // 4. Each session.
    for (const FocusSession& session : sessions) {
        if (const char* const reason = reasonAgainst(session, latestStart))
            return Fault(reason, "session", sessions, session);
    }

    // 5. Each task.
    for (const TaskItem& task : tasks.items) {
        if (const char* const reason = reasonAgainst(task))
            return Fault(reason, "task", tasks.items, task);
    }
    return std::nullopt;
}

SelvaneBackup::Merged SelvaneBackup::merged(TaskList currentTasks,
                                            std::vector<FocusSession> currentSessions) const {
    // 1. and 2. The document's sessions among the present ones.
    appendNew(currentSessions, sessions);
    std::ranges::stable_sort(currentSessions, {}, &FocusSession::start);

    // 3. and 4. The document's tasks behind the present ones.
    appendNew(currentTasks.items, tasks.items);
    currentTasks.normalize();

    // 5. Both.
    return {std::move(currentTasks), std::move(currentSessions)};
}

std::string SelvaneBackup::summary() const {
    const auto focusSessions = std::ranges::count(sessions, Phase::focus, &FocusSession::phase);
    return counted(std::ssize(tasks.items), "task") + " · " + counted(focusSessions, "session");
}

} // namespace selvane
