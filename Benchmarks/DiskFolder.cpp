#include "DiskFolder.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

namespace selvane::benchmarks {

namespace {

void check(bool isDone) {
    if (!isDone)
        std::abort();
}

} // namespace

DiskFolder::DiskFolder() {
    // Beside the program, since a folder for temporary files may be in memory, where a sync costs nothing.
    std::string name = SELVANE_BENCHMARK_FOLDER "/selvane-benchmark-XXXXXX";
    check(::mkdtemp(name.data()) != nullptr);
    _path = name;
}

DiskFolder::~DiskFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

void DiskFolder::writeDurably(std::string_view bytes) const {
    const auto temporary = _path / "floor.new";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    check(::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    check(::fsync(file) == 0 && ::close(file) == 0);
    check(std::rename(temporary.c_str(), (_path / "floor").c_str()) == 0);
    const int folder = ::open(_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    check(::fsync(folder) == 0 && ::close(folder) == 0);
}

} // namespace selvane::benchmarks
