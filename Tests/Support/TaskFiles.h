#pragma once

#include <initializer_list>
#include <optional>
#include <string>

namespace selvane::test {

/// One task for a file made by hand.
struct TaskLine {
    std::string id;
    bool isDone = false;
    std::optional<std::string> completedAt = std::nullopt;
};

inline const std::string firstTask = "11111111-1111-4111-8111-111111111111";
inline const std::string secondTask = "22222222-2222-4222-8222-222222222222";
inline const std::string thirdTask = "33333333-3333-4333-8333-333333333333";

/// The text of a task file.
inline std::string taskFile(std::initializer_list<TaskLine> lines) {
    std::string text;
    for (const TaskLine& line : lines) {
        text += text.empty() ? "" : ",";
        text += R"({"id":")" + line.id + R"(","title":"Task","isDone":)" + (line.isDone ? "true" : "false") +
                R"(,"createdAt":"2026-01-01T00:00:00Z","estimatedPomodoros":1,"completedPomodoros":0)" +
                (line.completedAt ? R"(,"completedAt":")" + *line.completedAt + '"' : "") + "}";
    }
    return R"({"items":[)" + text + "]}";
}

} // namespace selvane::test
