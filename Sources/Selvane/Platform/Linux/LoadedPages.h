#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

/// The program's code and that of its libraries, as far as it lies in the process's memory. The kernel puts
/// sixteen pages there for each one that is touched, and leaves them; most of them are needed by a start
/// only, or by nothing.
///
/// They count as the process's memory although they are shared, and stand in the kernel's cache also without
/// it.
namespace selvane::LoadedPages {

struct Range {
    std::uintptr_t begin;
    std::uintptr_t end;

    bool operator==(const Range&) const = default;
};

/// Where memory holds code as it is in a file: private, not writable, with no page that was ever changed.
/// What libraries have beside their code stays, since each library that is loaded later looks through it.
/// `smaps` gives the text of /proc/PID/smaps; what it doesn't say for sure is left out.
[[nodiscard]] std::vector<Range> unchanged(std::istream& smaps);

/// Takes such pages out of this process's memory. Those that are touched again come back from the kernel's
/// cache, which costs about a microsecond for sixteen. Takes some milliseconds. Main thread, while no other
/// maps or unmaps files.
void giveBack();

} // namespace selvane::LoadedPages
