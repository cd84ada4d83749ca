#pragma once

#include "SelvaneCore/FileSystem.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace selvane::test {

/// The machine's file system with faults on request.
///
///     files.failCall(3);         // the third call from now fails, all others work
///     files.failAlways("move");  // every call of that name fails
///     files.failAlways("write", std::errc::no_space_on_device);
///     files.failMovesOf(path);   // that file can't be moved, others can
///     files.dieAt(3);            // the third call from now is the last thing that the process does
///     files.heal();
///
/// A write that fails has written half of its bytes before, as on a disk that runs full. A close that fails
/// has closed.
class FaultyFileSystem final : public FileSystem {
public:
    /// Counts from 1, beginning with the next call.
    void failCall(std::size_t number) { failCalls(number, number); }
    void failFrom(std::size_t number) { failCalls(number, std::numeric_limits<std::size_t>::max()); }
    void failAlways(const std::string& name, std::errc code = std::errc::io_error) { _failing[name] = code; }
    /// The next call of that name fails, all later ones work.
    void failFirst(const std::string& name, std::errc code) { _failingOnce[name] = code; }
    void failMovesOf(const Path& path) { _unmovable = path; }
    void dieAt(std::size_t number) {
        failCalls(0, 0);
        _lastCall = number;
    }
    void heal() {
        failCalls(0, 0);
        _lastCall = 0;
        _corruptsReads = false;
        _failing.clear();
        _failingOnce.clear();
        _unmovable.clear();
        _writeLimit = std::numeric_limits<std::size_t>::max();
    }
    /// Every write takes at most so many bytes.
    void limitWrites(std::size_t count) { _writeLimit = count; }
    /// Every read gives at most so many bytes.
    void limitReads(std::size_t count) { _readLimit = count; }
    /// A sync succeeds without waiting for the disk, for tests that save thousands of times.
    void skipSyncs() { _skipsSyncs = true; }
    /// Every read gives one byte otherwise than it is on the disk.
    void corruptReads() { _corruptsReads = true; }
    /// Every file says that it has so many bytes, as if it were about to grow or shrink to what it has.
    void claimSize(std::size_t size) { _claimedSize = size; }

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
        return pass<std::size_t>("size", [&]() -> Result<std::size_t> {
            if (_claimedSize)
                return *_claimedSize;
            return _real.size(file);
        });
    }
    [[nodiscard]] Result<std::size_t> read(Descriptor file, std::span<char> into) override {
        return pass<std::size_t>("read", [&] {
            const auto count = _real.read(file, into.first(std::min(into.size(), _readLimit)));
            if (_corruptsReads && count && *count > 0)
                into.front() = static_cast<char>(into.front() ^ 1);
            return count;
        });
    }
    [[nodiscard]] Result<std::size_t> write(Descriptor file, std::string_view bytes) override {
        if (_calls.size() + 1 == _lastCall)
            static_cast<void>(_real.write(file, bytes.substr(0, bytes.size() / 2)));
        if (const auto fault = faultOf("write")) {
            static_cast<void>(_real.write(file, bytes.substr(0, bytes.size() / 2)));
            return tl::unexpected(*fault);
        }
        return _real.write(file, bytes.substr(0, _writeLimit));
    }
    [[nodiscard]] Result<void> sync(Descriptor file) override {
        return pass<void>("sync", [&] { return _skipsSyncs ? Result<void>{} : _real.sync(file); });
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
        return pass<void>("move", [&]() -> Result<void> {
            if (from != _unmovable)
                return _real.move(from, to);
            _calls.back() += '!';
            return tl::unexpected(std::make_error_code(std::errc::io_error));
        });
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

    /// Notes a call. The error that it is to fail with, if any.
    std::optional<std::error_code> faultOf(const std::string& name) {
        const std::size_t number = _calls.size() + 1;
        if (number == _lastCall)
            static_cast<void>(std::raise(SIGKILL));
        std::optional<std::error_code> fault;
        if (const auto failing = _failing.find(name); failing != _failing.end())
            fault = std::make_error_code(failing->second);
        else if (const auto once = _failingOnce.extract(name))
            fault = std::make_error_code(once.mapped());
        else if (number >= _firstFault && number <= _lastFault)
            fault = std::make_error_code(std::errc::io_error);
        _calls.push_back(fault ? name + "!" : name);
        return fault;
    }

    template <typename T>
    Result<T> pass(const char* name, const std::function<Result<T>()>& call) {
        if (const auto fault = faultOf(name))
            return tl::unexpected(*fault);
        return call();
    }

    Result<Descriptor> opened(Result<Descriptor> result) {
        if (result)
            ++_openCount;
        return result;
    }

    PosixFileSystem _real;
    std::vector<std::string> _calls;
    std::map<std::string, std::errc> _failing;
    std::map<std::string, std::errc> _failingOnce;
    Path _unmovable;
    std::size_t _lastCall = 0;
    bool _corruptsReads = false;
    std::size_t _firstFault = 0;
    std::size_t _lastFault = 0;
    std::size_t _writeLimit = std::numeric_limits<std::size_t>::max();
    std::size_t _readLimit = std::numeric_limits<std::size_t>::max();
    std::optional<std::size_t> _claimedSize;
    bool _skipsSyncs = false;
    int _openCount = 0;
};

} // namespace selvane::test
