// Counts up in a settings file as long as it lives, one number a turn of the loop, and says each number when
// its turn is over. For a test that kills it.

#include "Selvane/Platform/Linux/FileDefaultsStore.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace selvane {
namespace {

class Writer {
public:
    explicit Writer(const char* path)
        : _store(path, {&_fileSystem, [] { return Date{}; }, [] { return Calendar::utc(); }}, _scheduler) {}

    void count(std::int64_t number) {
        _store.set("count", SettingValue{number});
        _scheduler.post([this, number] {
            std::printf("%lld\n", static_cast<long long>(number));
            std::fflush(stdout);
            count(number + 1);
        });
    }

private:
    PosixFileSystem _fileSystem;
    LinuxScheduler _scheduler;
    FileDefaultsStore _store;
};

} // namespace
} // namespace selvane

int main(int argc, char** argv) {
    if (argc != 2)
        return EXIT_FAILURE;
    const QCoreApplication application(argc, argv);
    selvane::Writer writer(argv[1]);
    writer.count(1);
    return QCoreApplication::exec();
}
