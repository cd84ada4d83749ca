#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/SettingValue.h"
#include "SelvaneCore/TaskList.h"
#include "SelvaneCore/UUID.h"

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// All of the user's data as one document that describes itself: every backup and every export is one. Such a
/// file may come from anywhere, so that reading it trusts nothing.
///
/// A value that knows neither clock nor storage. Any thread.
struct SelvaneBackup {
    static constexpr std::string_view formatName = "selvane-backup";
    /// The version of the form that is written, and the highest one that is read.
    static constexpr std::int64_t currentSchema = 1;
    /// The largest document that is read, in bytes: 50 MiB.
    static constexpr std::size_t maxFileSize = 52'428'800;

    /// Why a document is refused.
    struct Problem {
        enum class Kind { newerVersion, invalid, tooLarge, notABackup };

        Kind kind;
        /// Of a `newerVersion`: the version that was found.
        std::int64_t version = 0;
        /// Of an `invalid` document: what is wrong, to stand in a sentence.
        std::string reason = {};

        /// The whole sentence for the user.
        [[nodiscard]] std::string errorDescription() const;

        friend bool operator==(const Problem&, const Problem&) = default;
    };

    /// The user's present data and a document's, put together.
    struct Merged {
        TaskList tasks;
        std::vector<FocusSession> sessions;
    };

    /// Always `formatName`.
    std::string format;
    /// `currentSchema`, or what an older document said.
    std::int64_t schemaVersion;
    /// The version of the program that wrote it.
    std::string appVersion;
    /// The moment of writing.
    Date exportedAt;
    TaskList tasks;
    std::vector<FocusSession> sessions;
    /// The task that the timer was counting toward.
    std::optional<UUID> currentTaskID;
    SettingValues settings;

    /// A document of the current schema.
    SelvaneBackup(std::string appVersion, Date exportedAt, TaskList tasks, std::vector<FocusSession> sessions,
                  std::optional<UUID> currentTaskID, SettingValues settings);

    /// Reads a document and validates it. What is larger than `maxFileSize` isn't parsed. Sessions that can't
    /// be read are left out without a word; anything else that can't be read refuses the whole document.
    [[nodiscard]] static tl::expected<SelvaneBackup, Problem> decode(const FileContents& data, Date now);

    /// The document's bytes. Nothing is validated. Fails if some text is not UTF-8 or some number not finite.
    [[nodiscard]] tl::expected<std::string, JSONWriteError> encoded() const;

    /// Checks every record, in time that grows with their number: `decode` refuses what fails here. Times in
    /// the future are possible up to a day after `now`.
    [[nodiscard]] tl::expected<void, Problem> validate(Date now) const;
    /// Which record `validate` fails for and why, in words for the log; absent if all is well.
    [[nodiscard]] std::optional<std::string> firstInvalidRecord(Date now) const;

    /// Adds this document to the user's present data, which wins wherever an id is in both.
    [[nodiscard]] Merged merged(TaskList currentTasks, std::vector<FocusSession> currentSessions) const;

    /// What is in it, as in "12 tasks · 1 session". Breaks don't count.
    [[nodiscard]] std::string summary() const;

    friend bool operator==(const SelvaneBackup&, const SelvaneBackup&) = default;

private:
    struct Fault;

    [[nodiscard]] std::optional<Fault> firstFault(Date now) const;
};

} // namespace selvane
