#include "SelvaneCore/BackupRotation.h"
#include "Support/DataHarness.h"
#include "Support/LocalTime.h"
#include "Support/Repeats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

/// Whatever call to the file system fails, and at whatever call the process dies: nothing that was on the
/// disk is lost. It is in its place, in a backup or set aside.
namespace selvane {
namespace {

using test::DataHarness;
using Path = std::filesystem::path;

/// The identifiers in all files below a folder. Files that were being written don't count.
std::set<std::string> identifiersBelow(const Path& folder) {
    constexpr std::size_t length = 36;
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() ||
            entry.path().filename().string().find(".saving-") != std::string::npos)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t at = 0; at + length <= text.size(); ++at) {
            if (text[at] == '"' && UUID::parse(text.substr(at + 1, length)))
                found.insert(text.substr(at + 1, length));
        }
    }
    return found;
}

/// The identifiers of what the model has in memory.
std::set<std::string> identifiersIn(const AppModel& model) {
    std::set<std::string> found;
    for (const TaskItem& item : model.tasks().items)
        found.insert(item.id.text());
    for (const FocusSession& session : model.sessions())
        found.insert(session.id.text());
    return found;
}

/// Random data on the disk.
class Setter {
public:
    explicit Setter(std::uint64_t seed) : _random(seed) {}

    std::uint64_t below(std::uint64_t end) { return _random() % end; }

    TaskList tasks() {
        TaskList list;
        for (auto left = 1 + below(4); left > 0; --left)
            list.items.push_back({.id = UUID::random(),
                                  .title = "Task",
                                  .isDone = false,
                                  .createdAt = test::utc(2026, 3, 1),
                                  .completedAt = std::nullopt,
                                  .estimatedPomodoros = 1,
                                  .completedPomodoros = 0});
        return list;
    }

    std::vector<FocusSession> sessions() {
        std::vector<FocusSession> result;
        for (auto left = 1 + below(5); left > 0; --left) {
            const Date start = test::utc(2026, 3, 1) + std::chrono::minutes{below(4000)};
            result.push_back({.id = UUID::random(),
                              .start = start,
                              .end = start + std::chrono::minutes{25},
                              .phase = Phase::focus,
                              .plannedSeconds = Seconds{1500},
                              .actualSeconds = Seconds{1500},
                              .completed = true,
                              .taskID = std::nullopt,
                              .apps = std::nullopt});
        }
        return result;
    }

    SelvaneBackup backup(Date exportedAt) {
        return {"1.1", exportedAt, tasks(), sessions(), std::nullopt, {}};
    }

    void haveTasks(DataHarness& harness) {
        const JSONStore<TaskList> store(harness.data() / "tasks.json", harness.storeEnvironment());
        ASSERT_TRUE(store.save(tasks()));
    }
    void haveSessions(DataHarness& harness) {
        const JSONStore<std::vector<FocusSession>> store(harness.data() / "sessions.json",
                                                         harness.storeEnvironment());
        ASSERT_TRUE(store.save(sessions()));
    }
    /// A file that can't be read, but tells one piece from another.
    void haveDamaged(DataHarness& harness, const std::string& name) {
        harness.write(name, "{\"damage\" : [\"" + UUID::random().text() + "\"");
    }
    /// None, some, or as many of each kind as are kept, of which the oldest go: what those have is in all of
    /// them, so that nothing is lost with them. Some were made by a clock that ran ahead.
    void haveBackups(DataHarness& harness) {
        const std::size_t full = below(3);
        const auto count = [&](std::size_t most) { return full == 0 ? most : below(4); };
        const std::string text = *backup(test::utc(2026, 2, 1)).encoded();
        const std::string year = oneOfYears();
        for (std::size_t number = 0; number < count(BackupRotation::keepDaily); ++number)
            harness.write("Backups/daily-" + year + "-02-" + std::to_string(10 + number) + ".json", text);
        for (std::size_t number = 0; number < count(BackupRotation::keepPreUpdate); ++number)
            harness.write("Backups/pre-update-9-" + year + "-02-" + std::to_string(10 + number) + ".json",
                          text);
        for (std::size_t number = 0; number < count(BackupRotation::keepSafety); ++number)
            harness.write(
                "Backups/before-reset-" + year + "-02-01-0000" + std::to_string(10 + number) + ".json", text);
    }

private:
    std::string oneOfYears() { return below(4) == 0 ? "2027" : "2026"; }

    std::mt19937_64 _random;
};

struct Scenario {
    const char* name;
    /// Puts files on the disk.
    void (*prepare)(DataHarness&, Setter&);
    /// What happens before anything fails.
    void (*before)(DataHarness&);
    /// What fails.
    void (*run)(DataHarness&, Setter&);
    bool isDamaged = false;
};

void prepareData(DataHarness& harness, Setter& setter) {
    setter.haveTasks(harness);
    setter.haveSessions(harness);
    setter.haveBackups(harness);
    harness.defaults.store("lastRunBuild", {"12"});
}

void launch(DataHarness& harness) {
    harness.releaseNotes.emplace(harness.release, harness.files, "none");
    harness.launch();
}

void start(DataHarness& harness, Setter&) {
    harness.start();
}

/// All of the import, or nothing and the words for it.
void importAndCheck(DataHarness& harness, const SelvaneBackup& backup, ImportMode mode) {
    AppModel& model = harness.model();
    const auto before = identifiersIn(model);
    const auto imported = model.importBackup(backup, mode, "import");
    if (!imported) {
        ASSERT_EQ(imported.error().localizedDescription,
                  "Selvane couldn't save a copy of your current data first, so nothing was changed.");
        ASSERT_EQ(identifiersIn(model), before);
        return;
    }
    std::set<std::string> expected = mode == ImportMode::merge ? before : std::set<std::string>{};
    for (const TaskItem& item : backup.tasks.items)
        expected.insert(item.id.text());
    for (const FocusSession& session : backup.sessions)
        expected.insert(session.id.text());
    ASSERT_EQ(identifiersIn(model), expected);
}

const std::vector<Scenario> scenarios{
    {"launchWithDamagedTasks",
     [](DataHarness& harness, Setter& setter) {
         prepareData(harness, setter);
         setter.haveDamaged(harness, "tasks.json");
     },
     nullptr, start, true},
    {"launchWithDamagedSessions",
     [](DataHarness& harness, Setter& setter) {
         prepareData(harness, setter);
         setter.haveDamaged(harness, "sessions.json");
     },
     nullptr, start, true},
    {"launchWithBothDamaged",
     [](DataHarness& harness, Setter& setter) {
         prepareData(harness, setter);
         setter.haveDamaged(harness, "tasks.json");
         setter.haveDamaged(harness, "sessions.json");
     },
     nullptr, start, true},
    {"dailyBackup", prepareData, launch,
     [](DataHarness& harness, Setter&) { harness.model().backUpDaily(); }},
    {"backupBeforeUpdate",
     [](DataHarness& harness, Setter& setter) {
         prepareData(harness, setter);
         harness.defaults.store("lastRunBuild", {"11"});
     },
     nullptr, start},
    {"importReplace", prepareData, launch,
     [](DataHarness& harness, Setter& setter) {
         importAndCheck(harness, setter.backup(test::utc(2026, 3, 2)), ImportMode::replace);
     }},
    {"importMerge", prepareData, launch,
     [](DataHarness& harness, Setter& setter) {
         importAndCheck(harness, setter.backup(test::utc(2026, 3, 2)), ImportMode::merge);
     }},
    {"reset", prepareData, launch, [](DataHarness& harness, Setter&) { harness.model().resetStatistics(); }},
    {"migration",
     [](DataHarness& harness, Setter& setter) {
         prepareData(harness, setter);
         std::filesystem::rename(harness.data(), harness.folder.path() / "Vesk");
         harness.defaults.store("migratedFromVesk", {false});
         harness.predecessor = {.dataDirectory = harness.folder.path() / "Vesk",
                                .newDataDirectory = harness.data(),
                                .readDefaults = [] { return std::nullopt; }};
     },
     nullptr, start},
};

/// One scenario with a fault at one call.
class Attempt {
public:
    Attempt(const Scenario& scenario, std::uint64_t seed) : _scenario(scenario), _setter(seed) {
        // A process that dies takes nothing along that was written.
        harness.files.skipSyncs();
        scenario.prepare(harness, _setter);
        _onDisk = identifiersBelow(harness.folder.path());
        if (scenario.before)
            scenario.before(harness);
    }

    void run() { _scenario.run(harness, _setter); }

    /// What the model says, as long as it is the one that met the fault: no word of a failed save means that
    /// the disk has what it has, and recovery has told what it did.
    void expectTrueWords() {
        const AppModel& model = harness.model();
        if (model.saveError()) {
            ASSERT_TRUE(model.saveError()->starts_with("Selvane couldn't ")) << *model.saveError();
        } else {
            // The last save is that of the history, and forgets an earlier one that failed.
            const auto onDisk = identifiersBelow(harness.folder.path());
            for (const FocusSession& session : model.sessions())
                ASSERT_TRUE(onDisk.contains(session.id.text()));
        }
        if (const auto& notice = model.recoveryNotice()) {
            ASSERT_TRUE(notice->starts_with("Selvane couldn't read your ")) << *notice;
            ASSERT_EQ(notice->ends_with("kept in the data folder."), model.unrecoveredData()) << *notice;
        }
        ASSERT_TRUE(model.recoveryNotice() || !_scenario.isDamaged);
    }

    /// Runs with the faults that were set, and looks at what is left. False if it met none of them.
    bool runsIntoFault() {
        run();
        const bool hasFailed = harness.files.hasFailed();
        harness.files.heal();
        expectTrueWords();
        expectNothingLost();
        return hasFailed;
    }

    /// Dies on the way. False if it came to its end before the call at which it was to die.
    bool runAndDieAt(std::size_t call) {
        harness.files.dieAt(call);
        const pid_t child = ::fork();
        EXPECT_NE(child, -1);
        if (child == 0) {
            run();
            ::_exit(0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        harness.files.heal();
        harness.quit();
        const bool wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        EXPECT_TRUE(wasKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << "it ended by itself";
        return wasKilled;
    }

    /// What was on the disk is on the disk, and the next start finds its way.
    void expectNothingLost() {
        std::set<std::string> lost = _onDisk;
        for (const std::string& identifier : identifiersBelow(harness.folder.path()))
            lost.erase(identifier);
        ASSERT_TRUE(lost.empty()) << "lost " << lost.size() << ", first " << *lost.begin();

        AppModel& model = harness.start();
        ASSERT_EQ(model.saveError(), std::nullopt);
        if (!_scenario.isDamaged) {
            ASSERT_EQ(model.recoveryNotice(), std::nullopt);
        }
        const auto inMemory = identifiersIn(model);
        const auto now = identifiersBelow(harness.folder.path());
        ASSERT_TRUE(std::ranges::includes(now, inMemory)) << "what the model has is on the disk";
        ASSERT_TRUE(std::ranges::includes(now, _onDisk)) << "the next start lost something";

        // And the start after it has nothing to tell.
        ASSERT_EQ(harness.start().recoveryNotice(), std::nullopt);
        ASSERT_EQ(identifiersIn(harness.model()), inMemory);
    }

    DataHarness harness;

private:
    const Scenario& _scenario;
    Setter _setter;
    std::set<std::string> _onDisk;
};

/// Rounds with other data; more of them on request.
std::uint64_t rounds() {
    const char* const wanted = std::getenv("SELVANE_FAULT_ROUNDS");
    return wanted ? std::strtoull(wanted, nullptr, 10) : test::repeats(std::uint64_t{3});
}

class DataFaults : public testing::TestWithParam<Scenario> {
protected:
    /// Counts `attempt(seed, call)` for every call, until there are no more calls.
    template <typename Point>
    void forEveryCall(const char* what, Point point) {
        std::size_t points = 0;
        for (std::uint64_t seed = 1; seed <= rounds(); ++seed) {
            for (std::size_t call = 1; point(seed, call); ++call) {
                ++points;
                ASSERT_FALSE(HasFatalFailure()) << what << " " << call << ", seed " << seed;
            }
        }
        EXPECT_GE(points, 5U * rounds());
        std::printf("%s: %zu %s, 0 lost\n", GetParam().name, points, what);
    }
};

TEST_P(DataFaults, OneFailingCallLosesNothing) {
    forEveryCall("failing calls", [](std::uint64_t seed, std::size_t call) {
        Attempt attempt(GetParam(), seed);
        attempt.harness.files.failCall(call);
        return attempt.runsIntoFault();
    });
}

TEST_P(DataFaults, ADiskThatFailsFromOneCallOnLosesNothing) {
    forEveryCall("calls from which all fail", [](std::uint64_t seed, std::size_t call) {
        Attempt attempt(GetParam(), seed);
        attempt.harness.files.failFrom(call);
        return attempt.runsIntoFault();
    });
}

TEST_P(DataFaults, ADeathAtAnyCallLosesNothing) {
    forEveryCall("deaths", [](std::uint64_t seed, std::size_t call) {
        Attempt attempt(GetParam(), seed);
        const bool hasDied = attempt.runAndDieAt(call);
        attempt.expectNothingLost();
        return hasDied;
    });
}

INSTANTIATE_TEST_SUITE_P(AppModel, DataFaults, testing::ValuesIn(scenarios),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace selvane
