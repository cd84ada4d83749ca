#include "SelvaneCore/DurationPreset.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

namespace selvane {
namespace {

struct PresetRow {
    const char* name;
    std::size_t place;
    DurationPreset preset;
    const char* id;
    const char* title;
    const char* summary;
};

class PresetTable : public testing::TestWithParam<PresetRow> {};

TEST_P(PresetTable, StandsAtItsPlace) {
    EXPECT_EQ(DurationPreset::all.at(GetParam().place), GetParam().preset);
}

TEST_P(PresetTable, SaysItsLengths) {
    const PresetRow& row = GetParam();
    EXPECT_EQ(row.preset.id(), row.id);
    EXPECT_EQ(row.preset.title(), row.title);
    EXPECT_EQ(row.preset.summary(), row.summary);
}

TEST_P(PresetTable, IsFoundByItsLengths) {
    const auto& [focus, shortBreak, longBreak] = GetParam().preset;
    EXPECT_EQ(DurationPreset::matching(focus, shortBreak, longBreak), GetParam().preset);
}

TEST_P(PresetTable, KeepsWithinTheRanges) {
    const auto& [focus, shortBreak, longBreak] = GetParam().preset;
    EXPECT_TRUE(DurationPreset::range(Phase::focus).contains(focus));
    EXPECT_TRUE(DurationPreset::range(Phase::shortBreak).contains(shortBreak));
    EXPECT_TRUE(DurationPreset::range(Phase::longBreak).contains(longBreak));
}

INSTANTIATE_TEST_SUITE_P(
    DurationPreset, PresetTable,
    testing::Values(
        PresetRow{
            "classic", 0, {25, 5, 15}, "25/5/15", "25 / 5", "25 min focus, 5 min breaks, 15 min long break"},
        PresetRow{"lesson",
                  1,
                  {45, 15, 30},
                  "45/15/30",
                  "45 / 15",
                  "45 min focus, 15 min breaks, 30 min long break"},
        PresetRow{
            "hour", 2, {50, 10, 30}, "50/10/30", "50 / 10", "50 min focus, 10 min breaks, 30 min long break"},
        PresetRow{"deep",
                  3,
                  {90, 20, 30},
                  "90/20/30",
                  "90 / 20",
                  "90 min focus, 20 min breaks, 30 min long break"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(DurationPreset, EachHasAnIdentityOfItsOwn) {
    std::set<std::string> ids;
    for (const DurationPreset& preset : DurationPreset::all)
        ids.insert(preset.id());
    EXPECT_EQ(ids.size(), DurationPreset::all.size());
}

TEST(DurationPreset, PresetsAreComparedFieldByField) {
    const DurationPreset preset(25, 5, 15);
    EXPECT_EQ(preset, DurationPreset(25, 5, 15));
    EXPECT_NE(preset, DurationPreset(26, 5, 15));
    EXPECT_NE(preset, DurationPreset(25, 6, 15));
    EXPECT_NE(preset, DurationPreset(25, 5, 16));
}

struct NoPresetRow {
    const char* name;
    int focus;
    int shortBreak;
    int longBreak;
};

class NoPresetTable : public testing::TestWithParam<NoPresetRow> {};

TEST_P(NoPresetTable, MatchesNone) {
    const auto& [name, focus, shortBreak, longBreak] = GetParam();
    EXPECT_EQ(DurationPreset::matching(focus, shortBreak, longBreak), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    DurationPreset, NoPresetTable,
    testing::Values(NoPresetRow{"otherLongBreak", 25, 5, 20}, NoPresetRow{"otherShortBreak", 25, 6, 15},
                    NoPresetRow{"otherFocus", 24, 5, 15}, NoPresetRow{"partsOfTwoPresets", 45, 10, 30},
                    NoPresetRow{"breaksExchanged", 25, 15, 5}, NoPresetRow{"nothing", 0, 0, 0},
                    NoPresetRow{"negative", -25, -5, -15},
                    NoPresetRow{"largest", std::numeric_limits<int>::max(), std::numeric_limits<int>::max(),
                                std::numeric_limits<int>::max()}),
    [](const auto& test) { return std::string(test.param.name); });

struct RangeRow {
    Phase phase;
    int lowest;
    int highest;
};

class RangeTable : public testing::TestWithParam<RangeRow> {};

TEST_P(RangeTable, BothEndsAreAllowed) {
    const auto& [phase, lowest, highest] = GetParam();
    const MinuteRange range = DurationPreset::range(phase);
    EXPECT_EQ(range, (MinuteRange{lowest, highest}));
    EXPECT_TRUE(range.contains(lowest));
    EXPECT_TRUE(range.contains(highest));
    EXPECT_FALSE(range.contains(lowest - 1));
    EXPECT_FALSE(range.contains(highest + 1));
}

INSTANTIATE_TEST_SUITE_P(DurationPreset, RangeTable,
                         testing::Values(RangeRow{Phase::focus, 1, 120}, RangeRow{Phase::shortBreak, 1, 60},
                                         RangeRow{Phase::longBreak, 1, 60}),
                         [](const auto& test) { return std::string(rawValue(test.param.phase)); });

TEST(DurationPreset, LengthsAreNotChecked) {
    const DurationPreset preset(std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max());
    EXPECT_EQ(preset.id(), "-2147483648/0/2147483647");
    EXPECT_EQ(preset.title(), "-2147483648 / 0");
}

} // namespace
} // namespace selvane
