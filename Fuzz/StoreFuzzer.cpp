#include "Fuzz/Require.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/LossyArray.h"
#include "SelvaneCore/ModelsCoding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace selvane {
namespace {

/// What was read can be written, and what was written is read as the same and written as the same bytes.
template <typename Stored, typename Read>
void roundTrip(JSONValue root) {
    Read first;
    if (!decode(root, first))
        return;
    const auto write = [](const Read& read) {
        JSONWriter writer;
        if constexpr (std::is_same_v<Stored, Read>)
            encode(writer, read);
        else
            encode(writer, read.elements);
        const auto text = writer.finish();
        require(text.has_value());
        return std::string(*text);
    };
    const std::string text = write(first);
    const auto document = JSONDocument::parse(FileContents::copy(text));
    require(document.has_value());
    Read second;
    require(decode(document->root(), second).has_value());
    require(write(second) == text);
    if constexpr (!std::is_same_v<Stored, Read>)
        first.skipped = 0;
    require(second == first);
}

} // namespace
} // namespace selvane

/// Any bytes as a history and as a task list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto document = JSONDocument::parse(FileContents::copy(bytes));
    if (document) {
        roundTrip<std::vector<FocusSession>, LossyArray<FocusSession>>(document->root());
        roundTrip<TaskList, TaskList>(document->root());
    }
    return 0;
}
