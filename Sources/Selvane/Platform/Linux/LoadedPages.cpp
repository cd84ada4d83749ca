#include "Selvane/Platform/Linux/LoadedPages.h"

#include <sys/mman.h>

#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace selvane::LoadedPages {

namespace {

/// "7f00-7f10"
std::optional<Range> range(const std::string& text) {
    Range result{};
    const char* const end = text.data() + text.size();
    const auto begin = std::from_chars(text.data(), end, result.begin, 16);
    if (begin.ec != std::errc() || begin.ptr == end || *begin.ptr != '-')
        return std::nullopt;
    const auto rest = std::from_chars(begin.ptr + 1, end, result.end, 16);
    if (rest.ec != std::errc() || rest.ptr != end || result.begin >= result.end)
        return std::nullopt;
    return result;
}

/// "7f00-7f10 r-xp 00000000 fe:00 1234    /usr/lib/libm.so.6"
std::optional<Range> code(const std::string& line) {
    std::istringstream words(line);
    std::string place;
    std::string rights;
    std::string offset;
    std::string device;
    std::string number;
    std::string path;
    words >> place >> rights >> offset >> device >> number >> path;
    if (!path.starts_with('/') || rights != "r-xp")
        return std::nullopt;
    return range(place);
}

} // namespace

std::vector<Range> unchanged(std::istream& smaps) {
    std::vector<Range> ranges;
    std::optional<Range> file;
    bool isUnchanged = false;
    for (std::string line; std::getline(smaps, line);) {
        // Of the lines about a mapping, only the first doesn't begin with a name and a colon.
        const std::string_view first = std::string_view(line).substr(0, line.find(' '));
        if (!first.ends_with(':')) {
            file = code(line);
            isUnchanged = false;
        } else if (first == "Anonymous:") {
            isUnchanged = line.ends_with(" 0 kB");
        } else if (file && first == "Swap:") {
            // A changed page that was swapped out counts here only. It comes last of the two.
            if (isUnchanged && line.ends_with(" 0 kB"))
                ranges.push_back(*file);
            file.reset();
        }
    }
    return ranges;
}

void giveBack() {
    std::ifstream file("/proc/self/smaps");
    for (const Range& range : unchanged(file))
        // A refusal, as for locked memory, leaves things as they are.
        (void)madvise(reinterpret_cast<void*>(range.begin), range.end - range.begin, MADV_DONTNEED);
}

} // namespace selvane::LoadedPages
