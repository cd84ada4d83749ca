#pragma once

#include "SelvaneCore/FileSystem.h"

namespace selvane {

/// The file system of the machine. Calls that a signal interrupts are made again.
class PosixFileSystem final : public FileSystem {
public:
    [[nodiscard]] Result<bool> exists(const Path& path) override;
    [[nodiscard]] Result<Path> readLink(const Path& path) override;
    [[nodiscard]] Result<std::vector<std::string>> list(const Path& folder) override;
    [[nodiscard]] Result<Descriptor> openForReading(const Path& path) override;
    [[nodiscard]] Result<Descriptor> createForWriting(const Path& path) override;
    [[nodiscard]] Result<Descriptor> openFolder(const Path& path) override;
    [[nodiscard]] Result<std::size_t> size(Descriptor file) override;
    [[nodiscard]] Result<std::size_t> read(Descriptor file, std::span<char> into) override;
    [[nodiscard]] Result<std::size_t> write(Descriptor file, std::string_view bytes) override;
    [[nodiscard]] Result<void> sync(Descriptor file) override;
    [[nodiscard]] Result<void> close(Descriptor file) override;
    [[nodiscard]] Result<void> rename(const Path& from, const Path& to) override;
    [[nodiscard]] Result<void> move(const Path& from, const Path& to) override;
    [[nodiscard]] Result<void> remove(const Path& path) override;
    [[nodiscard]] Result<void> makeFolder(const Path& path) override;
};

} // namespace selvane
