#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/SelvaneBackup.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace selvane {
namespace {

constexpr Date now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5};

void require(bool condition) {
    if (!condition)
        std::abort();
}

/// What was read validates, can be written, and is then read as the same and written as the same bytes.
void roundTrip(const SelvaneBackup& first) {
    require(first.format == SelvaneBackup::formatName);
    require(first.schemaVersion <= SelvaneBackup::currentSchema);
    require(first.validate(now).has_value());
    require(!first.firstInvalidRecord(now));
    const auto text = first.encoded();
    require(text.has_value());
    const auto second = SelvaneBackup::decode(FileContents::copy(*text), now);
    require(second.has_value());
    require(*second == first);
    require(second->encoded() == text);
}

/// Nothing is merged twice, and nothing of either side is lost.
void mergeWithItself(const SelvaneBackup& backup) {
    const auto merged = backup.merged(backup.tasks, backup.sessions);
    require(merged.tasks.items.size() == backup.tasks.items.size());
    require(merged.sessions.size() == backup.sessions.size());
    const auto alone = backup.merged({}, {});
    require(alone.tasks.items.size() == backup.tasks.items.size());
    require(alone.sessions == merged.sessions);
}

} // namespace
} // namespace selvane

/// Any bytes as a backup document.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto backup = SelvaneBackup::decode(FileContents::copy(bytes), now);
    if (!backup) {
        require(!backup.error().errorDescription().empty());
        return 0;
    }
    roundTrip(*backup);
    mergeWithItself(*backup);
    return 0;
}
