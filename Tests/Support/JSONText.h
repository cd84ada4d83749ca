#pragma once

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/JSONWriter.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <utility>

namespace selvane::test {

/// The text of a value that has one.
template <typename Value>
[[nodiscard]] std::string encoded(const Value& value) {
    JSONWriter writer;
    encode(writer, value);
    return std::string(writer.finish().value());
}

/// The value in `text`, read into `value`, or the problem of reading it.
template <typename Value>
[[nodiscard]] tl::expected<Value, std::string> decoded(std::string_view text, Value value) {
    const auto document = JSONDocument::parse(FileContents::copy(text));
    if (!document)
        return tl::unexpected(document.error().description());
    if (const auto outcome = decode(document->root(), value); !outcome)
        return tl::unexpected(outcome.error().description());
    return value;
}

template <typename Value>
[[nodiscard]] tl::expected<Value, std::string> decoded(std::string_view text) {
    return decoded(text, Value{});
}

} // namespace selvane::test
