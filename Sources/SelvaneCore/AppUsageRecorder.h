#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// Adds up, while a focus session runs, how long each application or website was in front.
///
/// A value that never reads a clock or the desktop: its owner tells it what is in front, and when. It is idle
/// or recording; while it records, one segment is open for what is in front. What is in front is known while
/// idle too, and outlives the session.
///
/// Not safe to share between threads. No operation fails; a clock that was set back adds nothing.
class AppUsageRecorder {
public:
    /// Starts a new session at `at` and forgets all time of the one before, also that of an open segment.
    /// Without a `bundleID`, what was in front before still is. Records from now on if anything is in front.
    void begin(const std::optional<std::string>& bundleID, const std::string& name, Date at);

    /// Switches what is in front. While idle it is only noted.
    void activate(const std::string& bundleID, const std::string& name, Date at);

    /// Stops recording, as for a paused timer.
    void suspend(Date at);

    /// Goes on after `suspend`. Does nothing while recording, or as long as nothing is known in front.
    void resume(Date at);

    /// Ends the session. Its usage in the order of `ranksBefore`, full ties as they first came to the front,
    /// without anything that was there for less than a second. May be empty.
    [[nodiscard]] std::vector<AppUsage> finish(Date at);

    [[nodiscard]] bool isRecording() const { return _segmentStart.has_value(); }

    friend bool operator==(const AppUsageRecorder&, const AppUsageRecorder&) = default;

private:
    struct App {
        std::string bundleID;
        std::string name;

        friend bool operator==(const App&, const App&) = default;
    };

    void close(Date at);
    AppUsage& total(const App& app);

    std::optional<App> _frontmost;
    /// Present exactly while recording, and then `_frontmost` is too.
    std::optional<Date> _segmentStart;
    /// Closed segments, one entry for each identifier, in the order in which they were first closed. A
    /// session meets few of them.
    std::vector<AppUsage> _totals;
};

} // namespace selvane
