#pragma once

#include "Selvane/App/LocalDataLifecycle.h"
#include "Selvane/App/ReleaseNotes.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FaultyFileSystem.h"
#include "Support/ModelHarness.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane::test {

/// A model with its real backups, data lifecycle and settings, on files that fail on request.
///
///     harness.write("sessions.json", "damage");
///     harness.launch();
///     EXPECT_EQ(harness.names("Backups"), ...);
class DataHarness : public ModelHarness {
public:
    DataHarness() {
        fileSystem = &files;
        adjustServices = [this](AppServices& services) {
            services.makeDataLifecycle = [this] {
                return std::make_unique<LocalDataLifecycle>(lifecycleEnvironment());
            };
            services.makeSettings = [](DefaultsStore& store) { return std::make_unique<AppSettings>(store); };
        };
        defaults.store("migratedFromVesk", {true});
    }

    /// A start of this release, as the application delegate makes it.
    AppModel& start() {
        releaseNotes.emplace(release, files, folder.path() / "Changelog.json");
        AppModel& model = launch();
        model.showWhatsNewAfterUpdate = [this] { journal.note("show what's new"); };
        model.backUpDaily();
        model.showWhatsNewIfUpdated();
        model.announceRecovery();
        return model;
    }

    /// The names in a folder below the data folder, sorted.
    [[nodiscard]] std::vector<std::string> names(const std::string& below = "") const {
        std::vector<std::string> result;
        const auto path = data() / below;
        if (std::filesystem::exists(path)) {
            for (const auto& entry : std::filesystem::directory_iterator(path))
                result.push_back(entry.path().filename().string());
        }
        std::ranges::sort(result);
        return result;
    }

    [[nodiscard]] std::filesystem::path data() const { return folder.path() / "Selvane"; }
    [[nodiscard]] std::string read(const std::string& name) const { return folder.read("Selvane/" + name); }
    void write(const std::string& name, const std::string& bytes) const {
        folder.write("Selvane/" + name, bytes);
    }

    LocalDataLifecycle::Environment lifecycleEnvironment() {
        return {
            .defaults = &defaults,
            .fileSystem = &files,
            .releaseNotes = &*releaseNotes,
            .clock = [this] { return now; },
            .calendar = [this] { return calendar; },
            .dateAndTime = [this](Date date) { return dateWords(date); },
            .predecessor = predecessor,
        };
    }

    [[nodiscard]] std::string dateWords(Date date) const {
        const absl::CivilSecond civil = calendar.civil(date);
        return "day " + std::to_string(civil.day()) + " at " + std::to_string(civil.hour());
    }

    FaultyFileSystem files;
    ReleaseNotes::Release release{.version = "1.2", .build = "12"};
    std::optional<ReleaseNotes> releaseNotes;
    std::optional<LocalDataLifecycle::Predecessor> predecessor;
};

} // namespace selvane::test
