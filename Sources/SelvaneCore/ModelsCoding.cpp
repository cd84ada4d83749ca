#include "SelvaneCore/ModelsCoding.h"

#include <array>
#include <string_view>

namespace selvane {

template <typename Writer>
void encode(Writer& writer, const DayKey& key) {
    writer.beginObject();
    writer.key("day");
    writer.value(key.day);
    writer.key("month");
    writer.value(key.month);
    writer.key("year");
    writer.value(key.year);
    writer.endObject();
}

template <typename Writer>
void encode(Writer& writer, const AppUsage& usage) {
    writer.beginObject();
    writer.key("bundleID");
    writer.value(usage.bundleID);
    writer.key("name");
    writer.value(usage.name);
    writer.key("seconds");
    writer.value(usage.seconds.count());
    writer.endObject();
}

template <typename Writer>
void encode(Writer& writer, const FocusSession& session) {
    writer.beginObject();
    writer.key("actualSeconds");
    writer.value(session.actualSeconds.count());
    if (session.apps) {
        writer.key("apps");
        encode(writer, *session.apps);
    }
    writer.key("completed");
    writer.value(session.completed);
    writer.key("end");
    writer.value(session.end);
    writer.key("id");
    writer.value(session.id);
    writer.key("phase");
    writer.value(rawValue(session.phase));
    writer.key("plannedSeconds");
    writer.value(session.plannedSeconds.count());
    writer.key("start");
    writer.value(session.start);
    if (session.taskID) {
        writer.key("taskID");
        writer.value(*session.taskID);
    }
    writer.endObject();
}

template <typename Writer>
void encode(Writer& writer, const TaskItem& item) {
    writer.beginObject();
    if (item.completedAt) {
        writer.key("completedAt");
        writer.value(*item.completedAt);
    }
    writer.key("completedPomodoros");
    writer.value(item.completedPomodoros);
    writer.key("createdAt");
    writer.value(item.createdAt);
    writer.key("estimatedPomodoros");
    writer.value(item.estimatedPomodoros);
    writer.key("id");
    writer.value(item.id);
    writer.key("isDone");
    writer.value(item.isDone);
    writer.key("title");
    writer.value(item.title);
    writer.endObject();
}

template <typename Writer>
void encode(Writer& writer, const TaskList& list) {
    writer.beginObject();
    writer.key("items");
    encode(writer, list.items);
    writer.endObject();
}

JSONOutcome decode(JSONValue value, Phase& into) {
    const auto text = value.text();
    const auto phase = text ? phaseFromRawValue(*text) : std::nullopt;
    if (!phase)
        return tl::unexpected(JSONError{value.isMissing() ? "missing" : "not a phase"});
    into = *phase;
    return {};
}

JSONOutcome decode(JSONValue value, DayKey& into) {
    static constexpr std::array<std::string_view, 3> keys{"day", "month", "year"};
    JSONRecord record(value, keys);
    record.required(0, into.day);
    record.required(1, into.month);
    record.required(2, into.year);
    return record.outcome();
}

JSONOutcome decode(JSONValue value, AppUsage& into) {
    static constexpr std::array<std::string_view, 3> keys{"bundleID", "name", "seconds"};
    JSONRecord record(value, keys);
    record.required(0, into.bundleID);
    record.required(1, into.name);
    record.required(2, into.seconds);
    return record.outcome();
}

JSONOutcome decode(JSONValue value, FocusSession& into) {
    static constexpr std::array<std::string_view, 9> keys{
        "actualSeconds", "apps", "completed", "end", "id", "phase", "plannedSeconds", "start", "taskID"};
    JSONRecord record(value, keys);
    record.required(0, into.actualSeconds);
    record.optional(1, into.apps);
    record.required(2, into.completed);
    record.required(3, into.end);
    record.required(4, into.id);
    record.required(5, into.phase);
    record.required(6, into.plannedSeconds);
    record.required(7, into.start);
    record.optional(8, into.taskID);
    return record.outcome();
}

JSONOutcome decode(JSONValue value, TaskItem& into) {
    static constexpr std::array<std::string_view, 7> keys{
        "completedAt", "completedPomodoros", "createdAt", "estimatedPomodoros", "id", "isDone", "title"};
    JSONRecord record(value, keys);
    record.optional(0, into.completedAt);
    record.required(1, into.completedPomodoros);
    record.required(2, into.createdAt);
    record.required(3, into.estimatedPomodoros);
    record.required(4, into.id);
    record.required(5, into.isDone);
    record.required(6, into.title);
    return record.outcome();
}

JSONOutcome decode(JSONValue value, TaskList& into) {
    static constexpr std::array<std::string_view, 1> keys{"items"};
    JSONRecord record(value, keys);
    record.required(0, into.items);
    return record.outcome();
}

template void encode(JSONWriter&, const DayKey&);
template void encode(JSONChecker&, const DayKey&);
template void encode(JSONWriter&, const AppUsage&);
template void encode(JSONChecker&, const AppUsage&);
template void encode(JSONWriter&, const FocusSession&);
template void encode(JSONChecker&, const FocusSession&);
template void encode(JSONWriter&, const TaskItem&);
template void encode(JSONChecker&, const TaskItem&);
template void encode(JSONWriter&, const TaskList&);
template void encode(JSONChecker&, const TaskList&);

} // namespace selvane
