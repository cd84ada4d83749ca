#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace selvane::test {

/// An empty folder of its own that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "selvane-test-XXXXXX").string();
        if (!::mkdtemp(name.data()))
            std::abort();
        _path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::permissions(_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return _path; }

    /// The bytes of the file of that name; empty if there is none.
    [[nodiscard]] std::string read(const std::string& name) const {
        std::ifstream file(_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((_path / name).parent_path());
        std::ofstream(_path / name, std::ios::binary) << bytes;
    }

private:
    std::filesystem::path _path;
};

} // namespace selvane::test
