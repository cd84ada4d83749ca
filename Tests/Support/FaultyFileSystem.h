#pragma once

#include "SelvaneCore/FileSystem.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace selvane::test {

/// The machine's file system with faults on request.
///
///     files.failCall(3);         // the third call from now fails, all others work
///     files.failAlways("move");  // every call of that name fails
///     files.heal();
///
/// A write that fails has written half of its bytes before, as on a disk that runs full. A close that fails
/// has closed.
class FaultyFileSystem final : public FileSystem {
public:
    /// Counts from 1, beginning with the next call.
    void failCall(std::size_t number) { failCalls(number, number); }
    void failFrom(std::size_t number) { failCalls(number, std::numeric_limits<std::size_t>::max()); }
    void failAlways(const std::string& name) { _failing.insert(name); }
    void heal() {
        failCalls(0, 0);
        _failing.clear();
        _writeLimit = std::numeric_limits<std::size_t>::max();
    }
    /// Every write takes at most so many bytes.
    void limitWrites(std::size_t count) { _writeLimit = count; }
    /// Every read gives at most so many bytes.
    void limitReads(std::size_t count) { _readLimit = count; }

    /// The names of the calls since the last request, the failed ones with a "!".
    [[nodiscard]] const std::vector<std::string>& calls() const { return _calls; }
    /// Whether a requested fault has come to pass since.
    [[nodiscard]] bool hasFailed() const {
        return std::ranges::any_of(_calls, [](const std::string& name) { return name.ends_with('!'); });
    }
    /// Descriptors that were opened and not yet closed.
    [[nodiscard]] int openCount() const { return _openCount; }

    [[nodiscard]] Result<bool> exists(const Path& path) override {
        return pass<bool>("exists", [&] { return _real.exists(path); });
    }
    [[nodiscard]] Result<Path> readLink(const Path& path) override {
        return pass<Path>("readLink", [&] { return _real.readLink(path); });
    }
    [[nodiscard]] Result<std::vector<std::string>> list(const Path& folder) override {
        return pass<std::vector<std::string>>("list", [&] { return _real.list(folder); });
    }
    [[nodiscard]] Result<Descriptor> openForReading(const Path& path) override {
        return opened(pass<Descriptor>("openForReading", [&] { return _real.openForReading(path); }));
    }
    [[nodiscard]] Result<Descriptor> createForWriting(const Path& path) override {
        return opened(pass<Descriptor>("createForWriting", [&] { return _real.createForWriting(path); }));
    }
    [[nodiscard]] Result<Descriptor> openFolder(const Path& path) override {
        return opened(pass<Descriptor>("openFolder", [&] { return _real.openFolder(path); }));
    }
    [[nodiscard]] Result<std::size_t> size(Descriptor file) override {
        return pass<std::size_t>("size", [&] { return _real.size(file); });
    }
    [[nodiscard]] Result<std::size_t> read(Descriptor file, std::span<char> into) override {
        return pass<std::size_t>(
            "read", [&] { return _real.read(file, into.first(std::min(into.size(), _readLimit))); });
    }
    [[nodiscard]] Result<std::size_t> write(Descriptor file, std::string_view bytes) override {
        if (isFault("write")) {
            static_cast<void>(_real.write(file, bytes.substr(0, bytes.size() / 2)));
            return tl::unexpected(std::make_error_code(std::errc::no_space_on_device));
        }
        return _real.write(file, bytes.substr(0, _writeLimit));
    }
    [[nodiscard]] Result<void> sync(Descriptor file) override {
        return pass<void>("sync", [&] { return _real.sync(file); });
    }
    [[nodiscard]] Result<void> close(Descriptor file) override {
        --_openCount;
        const Result<void> closed = _real.close(file);
        return pass<void>("close", [&] { return closed; });
    }
    [[nodiscard]] Result<void> rename(const Path& from, const Path& to) override {
        return pass<void>("rename", [&] { return _real.rename(from, to); });
    }
    [[nodiscard]] Result<void> move(const Path& from, const Path& to) override {
        return pass<void>("move", [&] { return _real.move(from, to); });
    }
    [[nodiscard]] Result<void> remove(const Path& path) override {
        return pass<void>("remove", [&] { return _real.remove(path); });
    }
    [[nodiscard]] Result<void> makeFolder(const Path& path) override {
        return pass<void>("makeFolder", [&] { return _real.makeFolder(path); });
    }

private:
    void failCalls(std::size_t first, std::size_t last) {
        _calls.clear();
        _firstFault = first;
        _lastFault = last;
    }

    bool isFault(const std::string& name) {
        const std::size_t number = _calls.size() + 1;
        const bool fails = (number >= _firstFault && number <= _lastFault) || _failing.contains(name);
        _calls.push_back(fails ? name + "!" : name);
        return fails;
    }

    template <typename T>
    Result<T> pass(const char* name, const std::function<Result<T>()>& call) {
        if (isFault(name))
            return tl::unexpected(std::make_error_code(std::errc::io_error));
        return call();
    }

    Result<Descriptor> opened(Result<Descriptor> result) {
        if (result)
            ++_openCount;
        return result;
    }

    PosixFileSystem _real;
    std::vector<std::string> _calls;
    std::set<std::string> _failing;
    std::size_t _firstFault = 0;
    std::size_t _lastFault = 0;
    std::size_t _writeLimit = std::numeric_limits<std::size_t>::max();
    std::size_t _readLimit = std::numeric_limits<std::size_t>::max();
    int _openCount = 0;
};

} // namespace selvane::test
