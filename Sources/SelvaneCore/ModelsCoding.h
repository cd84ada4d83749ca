#pragma once

#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/JSONChecker.h"
#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/TaskList.h"

#include <string>
#include <vector>

/// The JSON form of the stored records. Writing takes any record; reading is strict: a key that is missing, a
/// value of the wrong type or an unknown phase fails the record, while keys that are not known are passed
/// over. Nothing checks that what was read makes sense.
namespace selvane {

// `Writer` is a JSONWriter or a JSONChecker.

template <typename Writer>
void encode(Writer& writer, const DayKey& key);
template <typename Writer>
void encode(Writer& writer, const AppUsage& usage);
template <typename Writer>
void encode(Writer& writer, const FocusSession& session);
template <typename Writer>
void encode(Writer& writer, const TaskItem& item);
template <typename Writer>
void encode(Writer& writer, const TaskList& list);

[[nodiscard]] JSONOutcome decode(JSONValue value, Phase& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, DayKey& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, AppUsage& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, FocusSession& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, TaskItem& into);
[[nodiscard]] JSONOutcome decode(JSONValue value, TaskList& into);

template <typename Writer>
void encode(Writer& writer, const std::string& text) {
    writer.value(text);
}

template <typename Writer, typename Element>
void encode(Writer& writer, const std::vector<Element>& elements) {
    writer.beginArray();
    for (const Element& element : elements)
        encode(writer, element);
    writer.endArray();
}

} // namespace selvane
