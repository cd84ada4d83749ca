#include "SelvaneCore/Models.h"

#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace selvane {
namespace {

struct PhaseRow {
    Phase phase;
    std::string_view rawValue;
    std::string_view title;
    bool isBreak;
};

class PhaseTable : public testing::TestWithParam<PhaseRow> {};

TEST_P(PhaseTable, NamesThePhase) {
    const PhaseRow& row = GetParam();
    EXPECT_EQ(rawValue(row.phase), row.rawValue);
    EXPECT_EQ(title(row.phase), row.title);
    EXPECT_EQ(isBreak(row.phase), row.isBreak);
    EXPECT_EQ(phaseFromRawValue(row.rawValue), row.phase);
}

INSTANTIATE_TEST_SUITE_P(Models, PhaseTable,
                         testing::Values(PhaseRow{Phase::focus, "focus", "Focus", false},
                                         PhaseRow{Phase::shortBreak, "shortBreak", "Short Break", true},
                                         PhaseRow{Phase::longBreak, "longBreak", "Long Break", true}),
                         [](const auto& test) { return std::string(test.param.rawValue); });

TEST(Models, PhasesAreOfferedFocusFirst) {
    EXPECT_EQ(allPhases, (std::array{Phase::focus, Phase::shortBreak, Phase::longBreak}));
}

TEST(Models, OtherTextIsNoPhase) {
    for (const char* const text : {"", "break", "Focus", "focus ", "long_break", "short break"})
        EXPECT_EQ(phaseFromRawValue(text), std::nullopt) << text;
}

TEST(Models, DurationIsNeverBelowOneSecond) {
    for (const double minutes : {0.0, -3.0, 1.0 / 60.0, -std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()}) {
        const TimerConfig config{minutes, minutes, minutes, 4, true, false};
        for (const Phase phase : allPhases)
            EXPECT_EQ(config.duration(phase), Seconds{1.0}) << minutes;
    }
}

TEST(Models, EachPhaseHasItsOwnDuration) {
    const TimerConfig config{25.0, 5.0, 0.5, 4, false, false};
    EXPECT_EQ(config.duration(Phase::focus), Seconds{1500.0});
    EXPECT_EQ(config.duration(Phase::shortBreak), Seconds{300.0});
    EXPECT_EQ(config.duration(Phase::longBreak), Seconds{30.0});
}

TEST(Models, ConfigurationsAreComparedFieldByField) {
    const TimerConfig config{25.0, 5.0, 15.0, 4, false, false};
    EXPECT_EQ(config, (TimerConfig{25.0, 5.0, 15.0, 4, false, false}));
    EXPECT_NE(config, (TimerConfig{26.0, 5.0, 15.0, 4, false, false}));
    EXPECT_NE(config, (TimerConfig{25.0, 6.0, 15.0, 4, false, false}));
    EXPECT_NE(config, (TimerConfig{25.0, 5.0, 16.0, 4, false, false}));
    EXPECT_NE(config, (TimerConfig{25.0, 5.0, 15.0, 5, false, false}));
    EXPECT_NE(config, (TimerConfig{25.0, 5.0, 15.0, 4, true, false}));
    EXPECT_NE(config, (TimerConfig{25.0, 5.0, 15.0, 4, false, true}));
}

TEST(Models, OnlyTheWholePseudoIdentifierIsAway) {
    EXPECT_TRUE((AppUsage{"away", "Away", Seconds{1}}.isAway()));
    for (const char* const id : {"", "Away", "away ", "site:away", "org.example.away"})
        EXPECT_FALSE((AppUsage{id, "Away", Seconds{1}}.isAway())) << id;
}

struct SiteRow {
    const char* name;
    const char* domain;
    const char* id;
};

class SiteTable : public testing::TestWithParam<SiteRow> {};

TEST_P(SiteTable, TheDomainComesBackUnchanged) {
    const SiteRow& row = GetParam();
    EXPECT_EQ(AppUsage::siteID(row.domain), row.id);
    EXPECT_EQ((AppUsage{row.id, row.domain, Seconds{1}}.siteDomain()), row.domain);
    EXPECT_FALSE((AppUsage{row.id, row.domain, Seconds{1}}.isAway()));
}

INSTANTIATE_TEST_SUITE_P(Models, SiteTable,
                         testing::Values(SiteRow{"plain", "example.org", "site:example.org"},
                                         SiteRow{"upperCase", "Example.ORG", "site:Example.ORG"},
                                         SiteRow{"spaces", " example.org ", "site: example.org "},
                                         SiteRow{"withAPath", "example.org/a:b", "site:example.org/a:b"},
                                         SiteRow{"otherLetters", "bücher.example", "site:bücher.example"},
                                         SiteRow{"prefixTwice", "site:x.org", "site:site:x.org"},
                                         SiteRow{"away", "away", "site:away"}, SiteRow{"empty", "", "site:"}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Models, OnlyAWebsiteHasADomain) {
    for (const char* const id :
         {"", "away", "org.example.browser", "site", "Site:x.org", " site:x.org", "website:x.org"})
        EXPECT_EQ((AppUsage{id, "x.org", Seconds{1}}.siteDomain()), std::nullopt) << id;
}

} // namespace
} // namespace selvane
