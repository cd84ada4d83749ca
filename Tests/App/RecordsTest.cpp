#include "Support/DataHarness.h"
#include "Support/Dice.h"
#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

/// What the program records passes the validation of its own backups, whatever clocks, names and commands do.
namespace selvane {
namespace {

using test::Dice;
using test::utc;

/// Text of any length and kind, as applications and users give it.
std::string anyText(Dice& dice) {
    static const std::vector<std::string> pieces{
        "a", " ", "\n", "é", "👩‍👩‍👧", "\u0301", "\u2028", "日", "\x01", "\xff", "\xc3"};
    std::string text;
    for (int left = dice.oneIn(5) ? dice.below(700) : dice.below(8); left > 0; --left)
        text += pieces[dice.below(pieces.size())];
    return text;
}

std::vector<AppUsage> anyUsage(Dice& dice) {
    std::vector<AppUsage> usage;
    for (int left = dice.below(4); left > 0; --left) {
        const double seconds = dice.oneIn(4) ? 1e9 : dice.between(-100, 100'000);
        usage.push_back({anyText(dice), anyText(dice), Seconds{seconds}});
    }
    return usage;
}

class Records : public testing::TestWithParam<std::uint64_t> {};

TEST_P(Records, AlwaysMakeABackupThatDecodes) {
    Dice dice(GetParam());
    test::DataHarness harness;
    harness.files.skipSyncs();
    harness.start();
    AppModel& model = harness.model();
    // A record that was right by a clock that ran ahead is one by the clock that shows the latest time.
    Date latest = harness.now;
    for (int step = 0; step < 300; ++step) {
        SCOPED_TRACE(step);
        const auto anyTask = [&] {
            const auto& items = model.tasks().items;
            return items.empty() ? UUID::random() : items[dice.below(items.size())].id;
        };
        switch (dice.below(13)) {
        case 0:
            // The clock is set, by hours or by centuries.
            harness.now += std::chrono::hours{dice.oneIn(3) ? dice.between(-2'000'000, 2'000'000)
                                                            : dice.between(-50, 50)};
            break;
        case 1:
            model.addTask(anyText(dice));
            break;
        case 2:
            model.renameTask(anyTask(), anyText(dice));
            break;
        case 3:
            model.setEstimate(anyTask(), dice.between(-5'000, 5'000));
            break;
        case 4:
            model.toggleTask(anyTask());
            break;
        case 5:
            model.setCurrentTaskID(anyTask());
            break;
        case 6:
            model.engine().toggle();
            break;
        case 7:
            harness.answers.usage = anyUsage(dice);
            model.engine().reset();
            break;
        case 9:
            model.settings().appleMusicPlaylist.set(anyText(dice));
            model.settings().distractingApps.set({anyText(dice), anyText(dice)});
            model.settings().musicVolume.set(dice.oneIn(2) ? std::numeric_limits<double>::quiet_NaN() : 0.5);
            break;
        case 8:
            harness.answers.usage = anyUsage(dice);
            model.engine().skip();
            break;
        default:
            harness.pass(Seconds{static_cast<double>(dice.below(2000))});
        }
        latest = std::max(latest, harness.now);
        const SelvaneBackup backup = model.makeBackup();
        const auto text = backup.encoded();
        ASSERT_TRUE(text);
        const auto decoded = SelvaneBackup::decode(FileContents::copy(*text), latest);
        ASSERT_TRUE(decoded) << decoded.error().errorDescription() << " "
                             << backup.firstInvalidRecord(latest).value_or("");
        ASSERT_EQ(decoded->sessions.size(), model.sessions().size());
        ASSERT_EQ(decoded->tasks.items.size(), model.tasks().items.size());
    }
}

INSTANTIATE_TEST_SUITE_P(AppModel, Records, testing::Range<std::uint64_t>(1, 41));

TEST(RecordCounts, StopAtWhatARecordCanBe) {
    test::DataHarness harness;
    harness.start().addTask("Task");
    AppModel& model = harness.model();
    const UUID id = model.tasks().items.front().id;
    model.setEstimate(id, 1001);
    EXPECT_EQ(model.tasks().items.front().estimatedPomodoros, 1000);

    TaskList tasks = model.tasks();
    tasks.items.front().completedPomodoros = 99'999;
    model.setTasks(tasks);
    model.setCurrentTaskID(id);
    model.settings().autoStartBreaks.set(false);
    for (int round = 0; round < 2; ++round) {
        model.engine().select(Phase::focus);
        model.engine().start();
        harness.pass(Seconds{1501});
    }
    EXPECT_EQ(model.tasks().items.front().completedPomodoros, 100'000);
}

} // namespace
} // namespace selvane
