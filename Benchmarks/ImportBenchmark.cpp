#include "DiskFolder.h"
#include "GeneratedBackup.h"
#include "Measure.h"
#include "Selvane/App/AppModel.h"
#include "Selvane/App/EmptyServices.h"
#include "Selvane/App/LocalDataLifecycle.h"
#include "Selvane/App/ReleaseNotes.h"
#include "Selvane/Platform/AttentionSignal.h"
#include "Selvane/Platform/SoundPlayer.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "SelvaneCore/SelvaneBackup.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;

/// Nothing comes later where nothing is waited for.
class NoScheduler final : public Scheduler {
public:
    void post(Work) override {}
    Subscription after(Seconds, Work) override { return {}; }
    Subscription every(Seconds, Seconds, Work) override { return {}; }
    [[nodiscard]] Seconds now() const override { return {}; }
};

class NoActivity final : public ProcessActivity {
public:
    Subscription begin(std::string_view) override { return {}; }
};

class NoSound final : public SoundPlayer {
public:
    void play(std::string_view) override {}
};

class NoSignal final : public AttentionSignal {
public:
    void perform() override {}
};

class NoQueue final : public SerialQueue {
public:
    void run(Work) override {}
};

/// A model with its real data life on a disk.
class Fixture {
public:
    AppModel& model() { return _model; }
    [[nodiscard]] const DiskFolder& folder() const { return _folder; }

private:
    static AppServices services(Fixture& fixture) {
        return {
            .makeUpdater = [] { return std::make_unique<EmptyUpdater>(); },
            .makeBackups =
                [&](auto directory) {
                    return std::make_unique<BackupManager>(std::move(directory), fixture._storeEnvironment,
                                                           fixture._queue);
                },
            .makeNotifier =
                [&] { return std::make_unique<Notifier>(nullptr, fixture._storeEnvironment.clock); },
            .makeDataLifecycle =
                [&] {
                    return std::make_unique<LocalDataLifecycle>(LocalDataLifecycle::Environment{
                        .defaults = &fixture._defaults,
                        .fileSystem = &fixture._files,
                        .releaseNotes = &fixture._releaseNotes,
                        .clock = fixture._storeEnvironment.clock,
                        .calendar = fixture._storeEnvironment.calendar,
                        .dateAndTime = [](Date) { return std::string(); },
                        .predecessor = std::nullopt,
                    });
                },
            .makeSettings = [](DefaultsStore& defaults) { return std::make_unique<AppSettings>(defaults); },
            .makeMusic = [](AppSettings&) { return std::make_unique<EmptyMusicController>(); },
            .makeFocusGuard = [](AppSettings&) { return std::make_unique<EmptyFocusGuard>(); },
            .makeFocusMode = [](AppSettings&) { return std::make_unique<EmptyFocusModeController>(); },
            .makeCalendar = [](AppSettings&) { return std::make_unique<EmptyCalendarWatcher>(); },
            .applyAppearance = [](AppearanceMode) {},
        };
    }

    DiskFolder _folder;
    PosixFileSystem _files;
    StoreEnvironment _storeEnvironment{&_files, [] { return afterAll; }, [] { return Calendar::utc(); }};
    MemoryDefaultsStore _defaults;
    ReleaseNotes _releaseNotes{{.version = "1.0", .build = "1"}, _files, "none"};
    NoScheduler _scheduler;
    AwayMonitor _awayMonitor;
    NoActivity _activity;
    NoQueue _queue;
    NoSound _soundPlayer;
    NoSignal _attentionSignal;
    AppModel _model{{
        .scheduler = &_scheduler,
        .awayMonitor = &_awayMonitor,
        .processActivity = &_activity,
        .soundPlayer = &_soundPlayer,
        .attentionSignal = &_attentionSignal,
        .loginItem = nullptr,
        .defaults = &_defaults,
        .fileSystem = &_files,
        .clock = _storeEnvironment.clock,
        .calendar = _storeEnvironment.calendar,
        .file = [this](std::string_view name) { return _folder.path() / name; },
        .services = services(*this),
    }};
};

/// What the import of the largest backup costs the main thread once it is read, in a model whose history is
/// as large: a safety copy that is written and read back, and both stores saved. Against writing the bytes of
/// the backup once.
void ImportBackup(benchmark::State& state, ImportMode mode) {
    const FileContents contents = FileContents::copy(generatedBackup(SelvaneBackup::maxFileSize));
    const auto backup = SelvaneBackup::decode(contents, afterAll);
    if (!backup)
        std::abort();
    Fixture fixture;
    fixture.model().setSessions(backup->sessions);
    state.counters["file_mb"] = static_cast<double>(contents.bytes().size()) / 1e6;
    state.counters["sessions"] = static_cast<double>(backup->sessions.size());
    measure(
        state, Limit{.ratio = 8}, [] {},
        [&] {
            if (!fixture.model().importBackup(*backup, mode, "import") || fixture.model().saveError() ||
                fixture.model().sessions().size() != backup->sessions.size())
                std::abort();
        },
        [&] { fixture.folder().writeDurably(contents.bytes()); });
}

BENCHMARK_CAPTURE(ImportBackup, replace, ImportMode::replace)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ImportBackup, merge, ImportMode::merge)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
