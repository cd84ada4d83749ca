#pragma once

#include <functional>
#include <iosfwd>

namespace selvane::test {

/// What code did that a thread which must not wait may not do; the first of several that fits.
enum class Outcome {
    harmless,
    /// The kernel doesn't tell of system calls here.
    refused,
    allocated,
    locked,
    madeSystemCall,
    died,
};

void PrintTo(Outcome outcome, std::ostream* stream);

/// Runs `action` where each call to the allocator and to the locks of the C library is counted, from wherever
/// it comes, and where the first system call ends the process:
///
///     std::vector<AudioFrame> frames(4800);
///     EXPECT_EQ(outcomeOf([&] { source.render(frames); }), Outcome::harmless);
///
/// That process is a copy of this one: make what the action needs beforehand, and expect nothing of what it
/// changes afterwards. Only in programs that link selvane-call-detector.
///
/// Locks that the C library takes within itself, as for a FILE, aren't seen.
[[nodiscard]] Outcome outcomeOf(const std::function<void()>& action);

} // namespace selvane::test
