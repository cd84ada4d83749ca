#pragma once

#include "SelvaneCore/FileSystem.h"

namespace selvane {

/// A descriptor that is closed on every road out. The file system outlives it.
class OpenFile {
public:
    OpenFile(FileSystem& fileSystem, FileSystem::Descriptor descriptor)
        : _fileSystem(fileSystem), _descriptor(descriptor) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() {
        // Where the result of closing matters, `close` was called.
        if (_isOpen)
            static_cast<void>(_fileSystem.close(_descriptor));
    }

    [[nodiscard]] FileSystem::Descriptor descriptor() const { return _descriptor; }

    [[nodiscard]] FileSystem::Result<void> close() {
        _isOpen = false;
        return _fileSystem.close(_descriptor);
    }

private:
    FileSystem& _fileSystem;
    FileSystem::Descriptor _descriptor;
    bool _isOpen = true;
};

} // namespace selvane
