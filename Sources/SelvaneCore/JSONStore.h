#pragma once

#include "SelvaneCore/FileError.h"
#include "SelvaneCore/LossyArray.h"
#include "SelvaneCore/ModelsCoding.h"
#include "SelvaneCore/StoreEnvironment.h"
#include "SelvaneCore/StoreFile.h"

#include <tl/expected.hpp>

#include <concepts>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace selvane {

/// One live data file that holds one value as JSON. A file that can't be read is never overwritten: before
/// anything could, it is set aside under a ".corrupt-" name in its folder.
///
/// A value without cache, open file or lock. Every call blocks and works on the whole file; the callers see
/// to it that one thread at a time uses a file.
template <typename Value>
class JSONStore {
public:
    /// The file was read.
    struct Loaded {
        Value value;
    };
    /// There is a file, but it can't be read or holds something else.
    struct Unreadable {
        /// The copy under its set-aside name. Absent if there is none, so that the file must not be
        /// overwritten where it stands.
        std::optional<std::filesystem::path> movedTo;
    };
    /// There is no file: a first start, not an error.
    struct Missing {};
    using LoadResult = std::variant<Loaded, Unreadable, Missing>;

    /// Touches nothing on disk.
    JSONStore(std::filesystem::path url, StoreEnvironment environment)
        : _file(std::move(url), std::move(environment)) {}

    [[nodiscard]] const std::filesystem::path& url() const { return _file.url(); }

    /// The value that `read` loads, absent where it loads none.
    [[nodiscard]] std::optional<Value> load() const {
        LoadResult result = read();
        if (auto* const loaded = std::get_if<Loaded>(&result))
            return std::move(loaded->value);
        return std::nullopt;
    }

    /// Reads strictly: any fault makes the whole file unreadable and sets it aside.
    [[nodiscard]] LoadResult read() const {
        return readAs<Value>([](const FileContents&, Value& value) { return std::move(value); });
    }

    /// Reads an array element by element. Where some can't be read, the others are loaded, and a copy of the
    /// file is kept under a set-aside name, since the next save loses what was skipped.
    [[nodiscard]] LoadResult
    readLossy() const requires std::same_as<Value, std::vector<typename Value::value_type>> {
        using Array = LossyArray<typename Value::value_type>;
        return readAs<Array>([this](const FileContents& contents, Array& array) {
            if (array.skipped > 0)
                _file.keepOriginal(contents, array.skipped);
            return std::move(array.elements);
        });
    }

    /// Replaces the file as a whole, and makes its folder with mode 700 if there is none. On failure the old
    /// file is intact.
    [[nodiscard]] tl::expected<void, FileError> save(const Value& value) const {
        JSONChecker checker;
        encode(checker, value);
        if (const auto outcome = checker.outcome(); !outcome)
            return tl::unexpected(FileError{"encode", url(), outcome.error()});
        return _file.save([&value](JSONWriter& writer) { encode(writer, value); });
    }

private:
    /// Reads a `Form` of the value, from which `finish` makes the value.
    template <typename Form, typename Finish>
    LoadResult readAs(Finish finish) const {
        if (!_file.mayExist())
            return Missing{};
        const auto contents = _file.read();
        if (!contents)
            return Unreadable{_file.setAside(contents.error().description())};
        Form form{};
        const auto outcome = decodeText(*contents, form);
        if (!outcome)
            return Unreadable{_file.setAside(outcome.error())};
        return Loaded{finish(*contents, form)};
    }

    /// The error is told in words, because the document that it may refer to ends here.
    template <typename Form>
    static tl::expected<void, std::string> decodeText(const FileContents& contents, Form& into) {
        const auto describe = [](const JSONError& error) { return error.description(); };
        const auto document = JSONDocument::parse(contents);
        if (!document)
            return tl::unexpected(describe(document.error()));
        return decode(document->root(), into).map_error(describe);
    }

    StoreFile _file;
};

} // namespace selvane
