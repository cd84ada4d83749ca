#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace selvane::test {

/// What stand-ins were asked to do, in the order in which it happened.
class Journal {
public:
    void note(std::string entry) { _entries.push_back(std::move(entry)); }

    [[nodiscard]] const std::vector<std::string>& entries() const { return _entries; }
    [[nodiscard]] auto count(const std::string& entry) const { return std::ranges::count(_entries, entry); }
    [[nodiscard]] bool has(const std::string& entry) const { return count(entry) > 0; }
    void clear() { _entries.clear(); }

private:
    std::vector<std::string> _entries;
};

} // namespace selvane::test
