#pragma once

#include <filesystem>
#include <string_view>

namespace selvane::benchmarks {

/// A folder of its own on a disk, which goes with this object.
class DiskFolder {
public:
    DiskFolder();
    DiskFolder(const DiskFolder&) = delete;
    DiskFolder& operator=(const DiskFolder&) = delete;
    ~DiskFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return _path; }

    /// Puts ready bytes in a file as durably as can be: new file, sync, rename, sync of the folder. Nothing
    /// that keeps data safe can be faster.
    void writeDurably(std::string_view bytes) const;

private:
    std::filesystem::path _path;
};

} // namespace selvane::benchmarks
