#pragma once

#include "Selvane/App/AppModel.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "Support/FakeLoginItem.h"
#include "Support/Journal.h"
#include "Support/ManualQueue.h"
#include "Support/ManualScheduler.h"
#include "Support/RecordingServices.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace selvane::test {

/// A model on a folder of its own, with a clock that moves only when the test says so.
///
///     harness.launch();
///     harness.model().engine().start();
///     harness.pass(Seconds{60});
class ModelHarness {
public:
    /// A Thursday, 10:00 UTC.
    static constexpr Date launchTime =
        std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};

    /// Makes the model; a second call is a restart on the same files.
    AppModel& launch() {
        _model.reset();
        _model = std::make_unique<AppModel>(environment());
        return *_model;
    }

    void quit() { _model.reset(); }
    [[nodiscard]] AppModel& model() { return *_model; }

    /// Time passes: timers fire at their moments, on both clocks.
    void pass(Seconds length) {
        for (Seconds step{0.5}; length > Seconds{0}; length -= step) {
            step = std::min(step, length);
            now = adding(step, now);
            scheduler.advance(step);
        }
    }

    /// The machine sleeps, wakes and says so; no timer has fired meanwhile.
    void sleep(Seconds length) {
        now = adding(length, now);
        awayMonitor.didWake.emit();
    }

    AppEnvironment environment() {
        AppServices services = recordingServices(journal, answers, storeEnvironment(), queue);
        if (adjustServices)
            adjustServices(services);
        return {
            .scheduler = &scheduler,
            .awayMonitor = &awayMonitor,
            .processActivity = &activity,
            .soundPlayer = &sound,
            .attentionSignal = &signal,
            .loginItem = &loginItem,
            .defaults = &defaults,
            .fileSystem = fileSystem,
            .clock = [this] { return now; },
            .calendar = [this] { return calendar; },
            .file = [this](std::string_view name) { return folder.path() / "Selvane" / name; },
            .services = std::move(services),
        };
    }

    StoreEnvironment storeEnvironment() {
        return {fileSystem, [this] { return now; }, [this] { return calendar; }};
    }

    /// Puts real services in the place of those that only note.
    std::function<void(AppServices&)> adjustServices;

    TemporaryFolder folder;
    Journal journal;
    ServiceAnswers answers;
    ManualScheduler scheduler;
    ManualQueue queue;
    AwayMonitor awayMonitor;
    RecordingActivity activity{journal};
    RecordingSound sound{journal, answers};
    RecordingSignal signal{journal};
    FakeLoginItem loginItem;
    RecordingDefaults defaults{journal};
    PosixFileSystem posix;
    FileSystem* fileSystem = &posix;
    Date now = launchTime;
    Calendar calendar = Calendar::utc();

private:
    std::unique_ptr<AppModel> _model;
};

} // namespace selvane::test
