#include "Selvane/App/SettingChoices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;

/// The names of all cases, as each case tells its own.
template <SettingChoice Choice>
std::vector<std::string_view> namesOf() {
    std::vector<std::string_view> names;
    for (const Choice choice : allCases<Choice>)
        names.push_back(rawValue(choice));
    return names;
}

template <SettingChoice Choice>
void expectEachIsFoundByItsName() {
    for (const Choice choice : allCases<Choice>)
        EXPECT_EQ(fromRawValue<Choice>(rawValue(choice)), choice) << rawValue(choice);
    for (const std::string_view other : {"", "Ring", " off", "unknown", "0"})
        EXPECT_EQ(fromRawValue<Choice>(other), std::nullopt) << other;
}

TEST(SettingChoices, CasesComeInTheirOrder) {
    EXPECT_THAT(namesOf<TimerStyle>(), ElementsAre("ring", "bar", "minimal"));
    EXPECT_THAT(namesOf<MenuBarDisplay>(), ElementsAre("iconAndTime", "iconOnly", "timeOnly"));
    EXPECT_THAT(namesOf<AppearanceMode>(), ElementsAre("system", "light", "dark"));
    EXPECT_THAT(namesOf<GlassLevel>(), ElementsAre("off", "low", "medium", "high"));
    EXPECT_THAT(namesOf<MusicSource>(), ElementsAre("ambient", "appleMusic", "spotify", "none"));
    EXPECT_THAT(namesOf<AmbientSound>(), ElementsAre("rain", "white", "pink", "brown"));
    EXPECT_THAT(namesOf<FocusGuardMode>(), ElementsAre("off", "track", "nudge", "hide"));
}

TEST(SettingChoices, NamesBelongToTheirCases) {
    EXPECT_EQ(rawValue(TimerStyle::minimal), "minimal");
    EXPECT_EQ(rawValue(MenuBarDisplay::timeOnly), "timeOnly");
    EXPECT_EQ(rawValue(AppearanceMode::dark), "dark");
    EXPECT_EQ(rawValue(GlassLevel::high), "high");
    EXPECT_EQ(rawValue(MusicSource::none), "none");
    EXPECT_EQ(rawValue(AmbientSound::brown), "brown");
    EXPECT_EQ(rawValue(FocusGuardMode::hide), "hide");
}

TEST(SettingChoices, EachIsFoundByItsNameToTheLetter) {
    expectEachIsFoundByItsName<TimerStyle>();
    expectEachIsFoundByItsName<MenuBarDisplay>();
    expectEachIsFoundByItsName<AppearanceMode>();
    expectEachIsFoundByItsName<GlassLevel>();
    expectEachIsFoundByItsName<MusicSource>();
    expectEachIsFoundByItsName<AmbientSound>();
    expectEachIsFoundByItsName<FocusGuardMode>();
}

TEST(SettingChoices, TheOldRingIsNoNameOfADisplay) {
    EXPECT_EQ(fromRawValue<MenuBarDisplay>("ring"), std::nullopt);
}

TEST(SettingChoices, OnlyNudgeAndHideReactToDrift) {
    EXPECT_FALSE(reactsToDrift(FocusGuardMode::off));
    EXPECT_FALSE(reactsToDrift(FocusGuardMode::track));
    EXPECT_TRUE(reactsToDrift(FocusGuardMode::nudge));
    EXPECT_TRUE(reactsToDrift(FocusGuardMode::hide));
}

TEST(SettingChoices, SymbolsComeInTheirOrder) {
    EXPECT_THAT(symbolChoices,
                ElementsAre("eye", "brain.head.profile", "flame", "bolt", "target", "leaf", "book", "pencil",
                            "laptopcomputer", "headphones", "paintbrush.pointed", "sparkles", "sun.max",
                            "moon", "heart", "cup.and.saucer", "figure.walk", "music.note"));
}

} // namespace
} // namespace selvane
