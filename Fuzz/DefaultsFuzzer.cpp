#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/SettingValueCoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace selvane {
namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

std::string written(const SettingValues& values) {
    JSONChecker checker;
    encode(checker, values);
    require(checker.outcome().has_value());
    JSONWriter writer;
    encode(writer, values);
    const auto text = writer.finish();
    require(text.has_value());
    return std::string(*text);
}

} // namespace
} // namespace selvane

/// Any bytes as a file of settings: what was read can be written, and is then read as the same and written as
/// the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto document = JSONDocument::parse(FileContents::copy(bytes));
    if (!document)
        return 0;
    SettingValues first;
    if (const auto outcome = decode(document->root(), first); !outcome) {
        require(!outcome.error().description().empty());
        return 0;
    }
    const std::string text = written(first);
    const auto again = JSONDocument::parse(FileContents::copy(text));
    require(again.has_value());
    SettingValues second;
    require(decode(again->root(), second).has_value());
    require(second == first);
    require(written(second) == text);
    return 0;
}
