#include "Selvane/App/AppSettings.h"

#include "SelvaneCore/MemoryDefaultsStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Texts = SettingValue::Texts;

SettingValue text(std::string value) {
    return {std::move(value)};
}
SettingValue integer(std::int64_t value) {
    return {value};
}

/// One value of each kind, none of which is the default of any setting.
const std::vector<SettingValue> kinds{{false}, integer(7), {0.25}, text("other"), {Texts{"other"}}};

/// Keeps values, and the keys that were written to.
class WatchedStore final : public DefaultsStore {
public:
    WatchedStore() = default;
    explicit WatchedStore(SettingValues values) : _values(std::move(values)) {}

    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override {
        return _values.value(key);
    }
    void set(std::string_view key, std::optional<SettingValue> value) override {
        _written.emplace_back(key);
        _values.set(key, std::move(value));
    }

    /// Changes a value behind the settings' back.
    void plant(std::string_view key, SettingValue value) { _values.set(key, std::move(value)); }

    [[nodiscard]] const SettingValues& values() const { return _values.values(); }
    /// The keys that were written to since the last question, in order.
    std::vector<std::string> written() { return std::exchange(_written, {}); }

private:
    MemoryDefaultsStore _values;
    std::vector<std::string> _written;
};

enum class Hook { none, music, appearance, notifications, guard, focusMode, calendar };

/// Notes which hooks run and how often views hear of a change.
class Listener {
public:
    explicit Listener(AppSettings& settings) {
        settings.onMusicSettingsChange = noting(Hook::music);
        settings.onAppearanceChange = noting(Hook::appearance);
        settings.onNotificationsChange = noting(Hook::notifications);
        settings.onFocusGuardChange = noting(Hook::guard);
        settings.onFocusModeChange = noting(Hook::focusMode);
        settings.onCalendarChange = noting(Hook::calendar);
        _subscription = settings.changed.subscribe([this] { ++_changes; });
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Since the last question.
    std::vector<Hook> hooks() { return std::exchange(_hooks, {}); }
    int changes() { return std::exchange(_changes, 0); }

private:
    std::function<void()> noting(Hook hook) {
        return [this, hook] { _hooks.push_back(hook); };
    }

    std::vector<Hook> _hooks;
    int _changes = 0;
    Subscription _subscription;
};

// The table

struct SettingRow {
    std::string key;
    Hook hook;
    /// The default and another valid value, as they are stored.
    SettingValue initial;
    SettingValue other;
    /// The setting's value as it would be stored.
    std::function<SettingValue(const AppSettings&)> read;
    std::function<void(AppSettings&)> assignOther;
};

SettingValue asStored(bool value) {
    return {value};
}
SettingValue asStored(int value) {
    return integer(value);
}
SettingValue asStored(double value) {
    return {value};
}
SettingValue asStored(const std::string& value) {
    return {value};
}
SettingValue asStored(const Texts& value) {
    return {value};
}
template <SettingChoice Choice>
SettingValue asStored(Choice value) {
    return text(std::string(rawValue(value)));
}

template <typename T>
SettingRow row(const char* key, Setting<T> AppSettings::*setting, std::type_identity_t<T> initial,
               std::type_identity_t<T> other, Hook hook = Hook::none) {
    return {key,
            hook,
            asStored(initial),
            asStored(other),
            [setting](const AppSettings& settings) { return asStored((settings.*setting)()); },
            [setting, other](AppSettings& settings) { (settings.*setting).set(other); }};
}

const std::vector<SettingRow>& table() {
    using S = AppSettings;
    static const std::vector<SettingRow> rows{
        row("focusMinutes", &S::focusMinutes, 25, 50),
        row("shortBreakMinutes", &S::shortBreakMinutes, 5, 10),
        row("longBreakMinutes", &S::longBreakMinutes, 15, 30),
        row("sessionsBeforeLongBreak", &S::sessionsBeforeLongBreak, 4, 3),
        row("autoStartBreaks", &S::autoStartBreaks, true, false),
        row("autoStartFocus", &S::autoStartFocus, false, true),
        row("playEndSound", &S::playEndSound, true, false),
        row("notificationsEnabled", &S::notificationsEnabled, true, false, Hook::notifications),
        row("timerStyle", &S::timerStyle, TimerStyle::ring, TimerStyle::bar),
        row("menuBarDisplay", &S::menuBarDisplay, MenuBarDisplay::iconAndTime, MenuBarDisplay::timeOnly),
        row("appearance", &S::appearance, AppearanceMode::system, AppearanceMode::dark, Hook::appearance),
        row("glassLevel", &S::glassLevel, GlassLevel::medium, GlassLevel::off),
        row("focusSymbol", &S::focusSymbol, "eye", "flame"),
        row("breakSymbol", &S::breakSymbol, "cup.and.saucer", "figure.walk"),
        row("musicSource", &S::musicSource, MusicSource::ambient, MusicSource::spotify, Hook::music),
        row("ambientSound", &S::ambientSound, AmbientSound::rain, AmbientSound::pink, Hook::music),
        row("musicVolume", &S::musicVolume, 0.6, 0.3, Hook::music),
        row("autoPlayMusic", &S::autoPlayMusic, true, false),
        row("pauseMusicOnBreaks", &S::pauseMusicOnBreaks, true, false),
        row("appleMusicPlaylist", &S::appleMusicPlaylist, "", "Deep work"),
        row("spotifyPlaylist", &S::spotifyPlaylist, "", "Piano"),
        row("dailyGoalMinutes", &S::dailyGoalMinutes, 50, 120),
        row("dayStartHour", &S::dayStartHour, 4, 0),
        row("streakFreezesEnabled", &S::streakFreezesEnabled, true, false),
        row("autoClearCompletedTasks", &S::autoClearCompletedTasks, true, false),
        row("focusGuardMode", &S::focusGuardMode, FocusGuardMode::track, FocusGuardMode::hide, Hook::guard),
        row("distractingApps", &S::distractingApps, {}, {"org.chat", "org.mail"}, Hook::guard),
        row("distractingSites", &S::distractingSites, {}, {"news.example.com"}, Hook::guard),
        row("driftGraceSeconds", &S::driftGraceSeconds, 15, 30),
        row("focusModeEnabled", &S::focusModeEnabled, false, true, Hook::focusMode),
        row("focusOnShortcut", &S::focusOnShortcut, "", "Quiet", Hook::focusMode),
        row("focusOffShortcut", &S::focusOffShortcut, "", "Loud", Hook::focusMode),
        row("keepFocusModeDuringBreaks", &S::keepFocusModeDuringBreaks, false, true, Hook::focusMode),
        row("calendarEnabled", &S::calendarEnabled, false, true, Hook::calendar),
        row("ignoredCalendarIDs", &S::ignoredCalendarIDs, {}, {"holidays"}, Hook::calendar),
        row("fitSessionsToCalendar", &S::fitSessionsToCalendar, true, false),
        row("meetingBufferMinutes", &S::meetingBufferMinutes, 2, 5),
    };
    return rows;
}

bool isImported(const std::string& key) {
    return key != "focusModeEnabled" && key != "focusOnShortcut" && key != "focusOffShortcut";
}

/// Whether a stored value of one kind is read for a setting of the other, whatever it holds.
bool serves(const SettingValue& stored, const SettingValue& wanted) {
    if (std::holds_alternative<double>(wanted.payload))
        return stored.number().has_value();
    if (std::holds_alternative<std::int64_t>(wanted.payload))
        return stored.integer().has_value();
    return stored.payload.index() == wanted.payload.index();
}

class SettingTableRow : public testing::TestWithParam<SettingRow> {
protected:
    const SettingRow& row = GetParam();
    WatchedStore store;
};

TEST_P(SettingTableRow, FreshStoreGivesTheDefault) {
    const AppSettings settings(store);
    EXPECT_EQ(row.read(settings), row.initial);
    EXPECT_THAT(store.written(), IsEmpty());
}

TEST_P(SettingTableRow, AssignmentIsWrittenUnderTheKeyWithItsType) {
    AppSettings settings(store);
    row.assignOther(settings);
    EXPECT_EQ(row.read(settings), row.other);
    EXPECT_EQ(store.values(), (SettingValues{{row.key, row.other}}));
    EXPECT_THAT(store.written(), ElementsAre(row.key));
    row.assignOther(settings);
    EXPECT_THAT(store.written(), ElementsAre(row.key)) << "an equal value is written too";
}

TEST_P(SettingTableRow, StoredValueIsReadAndNotRewritten) {
    store.plant(row.key, row.other);
    const AppSettings settings(store);
    EXPECT_EQ(row.read(settings), row.other);
    EXPECT_THAT(store.written(), IsEmpty());
}

TEST_P(SettingTableRow, ValueOfAnotherKindReadsAsTheDefaultAndStays) {
    for (const SettingValue& wrong : kinds) {
        if (serves(wrong, row.initial))
            continue;
        store.plant(row.key, wrong);
        const AppSettings settings(store);
        EXPECT_EQ(row.read(settings), row.initial) << "kind " << wrong.payload.index();
        EXPECT_THAT(store.written(), IsEmpty());
    }
}

TEST_P(SettingTableRow, ItsHookAloneRunsAtEveryAssignmentAndViewsHearOfChangesOnly) {
    AppSettings settings(store);
    Listener listener(settings);
    const auto expected = row.hook == Hook::none ? std::vector<Hook>{} : std::vector{row.hook};
    row.assignOther(settings);
    EXPECT_EQ(listener.hooks(), expected);
    EXPECT_EQ(listener.changes(), 1);
    row.assignOther(settings);
    EXPECT_EQ(listener.hooks(), expected);
    EXPECT_EQ(listener.changes(), 0);
}

TEST_P(SettingTableRow, AbsentHookIsNoHarm) {
    AppSettings settings(store);
    row.assignOther(settings);
    EXPECT_EQ(row.read(settings), row.other);
}

TEST_P(SettingTableRow, ReloadAssignsOnlyWhatChanged) {
    AppSettings settings(store);
    store.plant(row.key, row.other);
    Listener listener(settings);
    EXPECT_EQ(row.read(settings), row.initial);
    settings.reload();
    EXPECT_EQ(row.read(settings), row.other);
    EXPECT_THAT(store.written(), ElementsAre(row.key));
    EXPECT_EQ(listener.changes(), 1);
    EXPECT_EQ(listener.hooks(), row.hook == Hook::none ? std::vector<Hook>{} : std::vector{row.hook});
    settings.reload();
    EXPECT_EQ(listener.changes(), 0);
    EXPECT_THAT(listener.hooks(), IsEmpty());
    EXPECT_THAT(store.written(), IsEmpty());
}

TEST_P(SettingTableRow, ReloadOfAnEmptyStoreGivesTheDefaultBack) {
    AppSettings settings(store);
    row.assignOther(settings);
    store.set(row.key, std::nullopt);
    settings.reload();
    EXPECT_EQ(row.read(settings), row.initial);
}

TEST_P(SettingTableRow, IsExportedOnceItWasWritten) {
    AppSettings settings(store);
    EXPECT_THAT(settings.exportValues(), IsEmpty());
    row.assignOther(settings);
    EXPECT_EQ(settings.exportValues(), (SettingValues{{row.key, row.other}}));
}

TEST_P(SettingTableRow, IsImportedUnlessItMeansNothingElsewhere) {
    AppSettings settings(store);
    Listener listener(settings);
    settings.importValues({{row.key, row.other}});
    EXPECT_EQ(row.read(settings), isImported(row.key) ? row.other : row.initial);
    EXPECT_EQ(store.values().contains(row.key), isImported(row.key));
    EXPECT_EQ(listener.changes(), isImported(row.key) ? 1 : 0);
    EXPECT_THAT(listener.hooks(), SizeIs(isImported(row.key) && row.hook != Hook::none ? 1 : 0));
}

INSTANTIATE_TEST_SUITE_P(AppSettings, SettingTableRow, testing::ValuesIn(table()),
                         [](const auto& row) { return row.param.key; });

TEST(AppSettings, KeysAreThoseOfTheTableInItsOrder) {
    std::vector<std::string_view> keys;
    for (const SettingRow& row : table())
        keys.push_back(row.key);
    EXPECT_THAT(AppSettings::keys(), testing::ElementsAreArray(keys));
    EXPECT_THAT(AppSettings::keys(), SizeIs(37));
}

TEST(AppSettings, ThreeKeysAreNotImported) {
    EXPECT_THAT(AppSettings::keysNotImported,
                ElementsAre("focusModeEnabled", "focusOnShortcut", "focusOffShortcut"));
}

// Numbers

struct RangeRow {
    const char* key;
    Setting<int> AppSettings::*setting;
    int lowest;
    int highest;
};

class StoredInteger : public testing::TestWithParam<RangeRow> {
protected:
    void expectRead(const SettingValue& stored, int read) const {
        WatchedStore store({{GetParam().key, stored}});
        const AppSettings settings(store);
        EXPECT_EQ((settings.*GetParam().setting)(), read);
        if (stored == integer(read)) {
            EXPECT_THAT(store.written(), IsEmpty());
            return;
        }
        if (stored.integer() == read) {
            EXPECT_EQ(store.value(GetParam().key), stored) << "what is valid stays as it is";
            return;
        }
        EXPECT_THAT(store.written(), ElementsAre(GetParam().key)) << "what is mended is written back";
        EXPECT_EQ(store.value(GetParam().key), integer(read));
    }
};

TEST_P(StoredInteger, InsideItsRangeStays) {
    for (const int valid : {GetParam().lowest, GetParam().lowest + 1, GetParam().highest})
        expectRead(integer(valid), valid);
}

TEST_P(StoredInteger, OutsideItsRangeIsClampedAndWrittenBack) {
    using Limits = std::numeric_limits<std::int64_t>;
    const auto [key, setting, lowest, highest] = GetParam();
    for (const std::int64_t low : {std::int64_t{lowest} - 1, std::int64_t{-1000}, Limits::min(),
                                   // As 32 bits these would be 1.
                                   -(std::int64_t{1} << 32) + 1})
        expectRead(integer(low), lowest);
    for (const std::int64_t high :
         {std::int64_t{highest} + 1, std::int64_t{1000}, Limits::max(), (std::int64_t{1} << 32) + 1})
        expectRead(integer(high), highest);
}

TEST_P(StoredInteger, MayBeAWholeFloat) {
    expectRead({static_cast<double>(GetParam().lowest)}, GetParam().lowest);
    expectRead({GetParam().highest + 1.0}, GetParam().highest);
    expectRead({1e15}, GetParam().highest);
    expectRead({-1e15}, GetParam().lowest);
}

TEST_P(StoredInteger, IsTheDefaultForOtherFloats) {
    WatchedStore fresh;
    const int initial = (AppSettings(fresh).*GetParam().setting)();
    for (const double other :
         {GetParam().lowest + 0.5, 1e300, -1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        WatchedStore store({{GetParam().key, {other}}});
        EXPECT_EQ((AppSettings(store).*GetParam().setting)(), initial) << other;
        EXPECT_THAT(store.written(), IsEmpty());
    }
}

TEST_P(StoredInteger, IsAssignedWithoutClamping) {
    WatchedStore store;
    AppSettings settings(store);
    (settings.*GetParam().setting).set(100'000);
    EXPECT_EQ((settings.*GetParam().setting)(), 100'000);
    EXPECT_EQ(store.value(GetParam().key), integer(100'000));
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, StoredInteger,
    testing::Values(RangeRow{"focusMinutes", &AppSettings::focusMinutes, 1, 120},
                    RangeRow{"shortBreakMinutes", &AppSettings::shortBreakMinutes, 1, 60},
                    RangeRow{"longBreakMinutes", &AppSettings::longBreakMinutes, 1, 60},
                    RangeRow{"sessionsBeforeLongBreak", &AppSettings::sessionsBeforeLongBreak, 2, 8},
                    RangeRow{"dailyGoalMinutes", &AppSettings::dailyGoalMinutes, 10, 600},
                    RangeRow{"dayStartHour", &AppSettings::dayStartHour, 0, 6},
                    RangeRow{"driftGraceSeconds", &AppSettings::driftGraceSeconds, 0, 120},
                    RangeRow{"meetingBufferMinutes", &AppSettings::meetingBufferMinutes, 0, 15}),
    [](const auto& row) { return row.param.key; });

struct VolumeRow {
    const char* name;
    SettingValue stored;
    double read;
    bool isMended;
};

class StoredVolume : public testing::TestWithParam<VolumeRow> {};

TEST_P(StoredVolume, IsReadOrMended) {
    WatchedStore store({{"musicVolume", GetParam().stored}});
    const AppSettings settings(store);
    EXPECT_EQ(settings.musicVolume(), GetParam().read);
    if (GetParam().isMended) {
        EXPECT_EQ(store.value("musicVolume"), SettingValue{0.6});
        EXPECT_THAT(store.written(), ElementsAre("musicVolume"));
    } else {
        EXPECT_THAT(store.written(), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, StoredVolume,
    testing::Values(VolumeRow{"Silent", {0.0}, 0.0, false}, VolumeRow{"Full", {1.0}, 1.0, false},
                    VolumeRow{"IntegerOfZero", integer(0), 0.0, false},
                    VolumeRow{"IntegerOfOne", integer(1), 1.0, false}, VolumeRow{"Flag", {true}, 0.6, false},
                    VolumeRow{"TooLoudIsNotFull", {1.5}, 0.6, true},
                    VolumeRow{"JustTooLoud", {std::nextafter(1.0, 2.0)}, 0.6, true},
                    VolumeRow{"BelowZero", {-0.1}, 0.6, true},
                    VolumeRow{"IntegerOfTwo", integer(2), 0.6, true},
                    VolumeRow{"Infinite", {std::numeric_limits<double>::infinity()}, 0.6, true},
                    VolumeRow{"NotANumber", {std::numeric_limits<double>::quiet_NaN()}, 0.6, true}),
    [](const auto& row) { return row.param.name; });

TEST(AppSettings, WhatIsNotANumberDiffersFromNumbersOnly) {
    WatchedStore store;
    AppSettings settings(store);
    Listener listener(settings);
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    settings.musicVolume.set(notANumber);
    EXPECT_EQ(listener.changes(), 1);
    settings.musicVolume.set(notANumber);
    EXPECT_EQ(listener.changes(), 0);
    settings.reload();
    EXPECT_EQ(settings.musicVolume(), 0.6);
    EXPECT_EQ(listener.changes(), 1);
}

// Choices and texts

struct TextRow {
    const char* name;
    std::string key;
    std::string stored;
    std::string read;
    bool isMended;
};

class StoredText : public testing::TestWithParam<TextRow> {};

TEST_P(StoredText, IsReadOrMended) {
    WatchedStore store({{GetParam().key, text(GetParam().stored)}});
    const AppSettings settings(store);
    const auto row = std::ranges::find(table(), GetParam().key, &SettingRow::key);
    ASSERT_NE(row, table().end());
    EXPECT_EQ(row->read(settings), text(GetParam().read));
    if (GetParam().isMended) {
        EXPECT_EQ(store.value(GetParam().key), text(GetParam().read));
        EXPECT_THAT(store.written(), ElementsAre(GetParam().key));
    } else {
        EXPECT_THAT(store.written(), IsEmpty());
    }
}

/// A text of so many characters of two bytes.
std::string umlauts(std::size_t count) {
    std::string result;
    while (result.size() < 2 * count)
        result += "ü";
    return result;
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, StoredText,
    testing::Values(TextRow{"UnknownTimerStyle", "timerStyle", "clock", "ring", false},
                    TextRow{"EmptyTimerStyle", "timerStyle", "", "ring", false},
                    TextRow{"UpperCaseTimerStyle", "timerStyle", "Bar", "ring", false},
                    TextRow{"OldRingOfTheMenuBar", "menuBarDisplay", "ring", "iconOnly", false},
                    TextRow{"UnknownMenuBarDisplay", "menuBarDisplay", "bar", "iconAndTime", false},
                    TextRow{"UnknownAppearance", "appearance", "blue", "system", false},
                    TextRow{"UnknownGlassLevel", "glassLevel", "higher", "medium", false},
                    TextRow{"UnknownMusicSource", "musicSource", "radio", "ambient", false},
                    TextRow{"UnknownAmbientSound", "ambientSound", "wind", "rain", false},
                    TextRow{"UnknownFocusGuardMode", "focusGuardMode", "ring", "track", false},
                    TextRow{"UnknownFocusSymbol", "focusSymbol", "star", "eye", true},
                    TextRow{"UnknownBreakSymbol", "breakSymbol", "star", "cup.and.saucer", true},
                    TextRow{"EmptyFocusSymbol", "focusSymbol", "", "", false},
                    TextRow{"EmptyBreakSymbol", "breakSymbol", "", "", false},
                    TextRow{"FocusSymbolOfBreaks", "focusSymbol", "cup.and.saucer", "cup.and.saucer", false},
                    TextRow{"PlaylistOf300", "appleMusicPlaylist", umlauts(300), umlauts(300), false},
                    TextRow{"PlaylistOf301", "appleMusicPlaylist", umlauts(301), umlauts(300), true},
                    TextRow{"OtherPlaylistOf301", "spotifyPlaylist", std::string(301, 'a'),
                            std::string(300, 'a'), true},
                    TextRow{"ShortcutOfAnyLength", "focusOnShortcut", umlauts(1000), umlauts(1000), false}),
    [](const auto& row) { return row.param.name; });

TEST(AppSettings, EverySymbolThatIsOfferedIsKept) {
    for (const std::string_view symbol : symbolChoices) {
        WatchedStore store(
            {{"focusSymbol", text(std::string(symbol))}, {"breakSymbol", text(std::string(symbol))}});
        const AppSettings settings(store);
        EXPECT_EQ(settings.focusSymbol(), symbol);
        EXPECT_EQ(settings.breakSymbol(), symbol);
    }
}

TEST(AppSettings, OldRingIsReplacedWhenSomethingIsAssigned) {
    WatchedStore store({{"menuBarDisplay", text("ring")}});
    AppSettings settings(store);
    settings.reload();
    EXPECT_EQ(store.value("menuBarDisplay"), text("ring"));
    settings.menuBarDisplay.set(settings.menuBarDisplay());
    EXPECT_EQ(store.value("menuBarDisplay"), text("iconOnly"));
}

// Lists

struct ListRow {
    const char* name;
    std::string key;
    Texts stored;
    Texts read;
};

class StoredList : public testing::TestWithParam<ListRow> {};

TEST_P(StoredList, IsReadOrMended) {
    WatchedStore store({{GetParam().key, {GetParam().stored}}});
    const AppSettings settings(store);
    EXPECT_EQ(GetParam().key == "distractingApps" ? settings.distractingApps() : settings.distractingSites(),
              GetParam().read);
    EXPECT_EQ(store.value(GetParam().key), SettingValue{GetParam().read});
    EXPECT_THAT(store.written(), SizeIs(GetParam().read == GetParam().stored ? 0 : 1));
}

/// "a0", "a1" and so on, with an ending.
Texts numbered(int first, int count, const std::string& ending = "") {
    Texts result;
    for (int number = first; number < first + count; ++number)
        result.push_back("a" + std::to_string(number) + ending);
    return result;
}

Texts joined(Texts left, const Texts& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, StoredList,
    testing::Values(
        ListRow{"AppsAsTheyAre", "distractingApps", {"b", "a", "B"}, {"b", "a", "B"}},
        ListRow{"EmptyApps", "distractingApps", {"", "a", ""}, {"a"}},
        ListRow{
            "RepeatedAppsKeepTheirFirstPlace", "distractingApps", {"b", "a", "b", "a", "c"}, {"b", "a", "c"}},
        ListRow{"AppsThatReadersTakeForOne", "distractingApps", {"caf\u00e9", "cafe\u0301"}, {"caf\u00e9"}},
        ListRow{"AppOf255", "distractingApps", {umlauts(255)}, {umlauts(255)}},
        ListRow{"AppOf256", "distractingApps", {umlauts(256), "a"}, {"a"}},
        ListRow{"OnlyEmptyApps", "distractingApps", {""}, {}},
        ListRow{"TwoHundredApps", "distractingApps", numbered(0, 200), numbered(0, 200)},
        ListRow{"TwoHundredAndOneApps", "distractingApps", numbered(0, 201), numbered(0, 200)},
        ListRow{"RepeatedAppsGoBeforeTheRestIsCut", "distractingApps",
                joined(joined(numbered(0, 50), numbered(0, 50)), numbered(50, 150)), numbered(0, 200)},
        ListRow{"TwoHundredAndFiftyApps", "distractingApps",
                joined(joined(numbered(0, 30), numbered(0, 10)), numbered(20, 210)), numbered(0, 200)},
        ListRow{"SitesAsTheyAre", "distractingSites", {"b.example", "a.example"}, {"b.example", "a.example"}},
        ListRow{"SitesInTheirNormalForm",
                "distractingSites",
                {"https://www.Example.com/page", "M\u00fcller.de"},
                {"example.com", "xn--mller-kva.de"}},
        ListRow{"SitesThatAreNone",
                "distractingSites",
                {"", "localhost", "10.0.0.1", "a.example"},
                {"a.example"}},
        ListRow{"SitesThatBecomeOne",
                "distractingSites",
                {"www.example.com", "b.example", "EXAMPLE.com", "example.com:80"},
                {"example.com", "b.example"}},
        ListRow{"TwoHundredAndOneSites", "distractingSites", numbered(0, 201, ".example"),
                numbered(0, 200, ".example")},
        ListRow{"RejectedSitesGoBeforeTheRestIsCut", "distractingSites",
                joined(numbered(0, 100), numbered(0, 200, ".example")), numbered(0, 200, ".example")}),
    [](const auto& row) { return row.param.name; });

TEST(AppSettings, IgnoredCalendarsAreKeptAsTheyAre) {
    const SettingValue stored{joined({"", "a", "a"}, numbered(0, 300))};
    WatchedStore store({{"ignoredCalendarIDs", stored}});
    EXPECT_EQ(AppSettings(store).ignoredCalendarIDs(), stored.texts());
    EXPECT_THAT(store.written(), IsEmpty());
}

TEST(AppSettings, MendingGoesByKindAndThenByTheTable) {
    WatchedStore store;
    for (const SettingRow& row : table()) {
        if (std::holds_alternative<std::int64_t>(row.initial.payload))
            store.plant(row.key, integer(-1));
    }
    for (const char* const key : {"focusSymbol", "breakSymbol"})
        store.plant(key, text("star"));
    for (const char* const key : {"appleMusicPlaylist", "spotifyPlaylist"})
        store.plant(key, text(std::string(301, 'a')));
    for (const char* const key : {"distractingApps", "distractingSites"})
        store.plant(key, {Texts{""}});
    store.plant("musicVolume", {2.0});
    const AppSettings settings(store);
    EXPECT_THAT(store.written(), ElementsAre("focusMinutes", "shortBreakMinutes", "longBreakMinutes",
                                             "sessionsBeforeLongBreak", "dailyGoalMinutes", "dayStartHour",
                                             "driftGraceSeconds", "meetingBufferMinutes", "focusSymbol",
                                             "breakSymbol", "musicVolume", "appleMusicPlaylist",
                                             "spotifyPlaylist", "distractingApps", "distractingSites"));
}

// What is derived

TEST(AppSettings, DefaultsMakeTheClassicCycle) {
    WatchedStore store;
    const AppSettings settings(store);
    EXPECT_EQ(settings.timerConfig(), (TimerConfig{25, 5, 15, 4, true, false}));
}

TEST(AppSettings, ConfigurationFollowsAChangeAtOnce) {
    WatchedStore store;
    AppSettings settings(store);
    settings.focusMinutes.set(50);
    settings.shortBreakMinutes.set(10);
    settings.longBreakMinutes.set(20);
    settings.sessionsBeforeLongBreak.set(2);
    settings.autoStartBreaks.set(false);
    settings.autoStartFocus.set(true);
    EXPECT_EQ(settings.timerConfig(), (TimerConfig{50, 10, 20, 2, false, true}));
}

TEST(AppSettings, DistractionsAreApplicationsAndSitesByTheirPseudoIdentifier) {
    WatchedStore store;
    AppSettings settings(store);
    EXPECT_THAT(settings.distractingSet(), IsEmpty());
    settings.distractingApps.set({"org.chat", "org.mail"});
    settings.distractingSites.set({"news.example.com"});
    EXPECT_THAT(settings.distractingSet(), ElementsAre("org.chat", "org.mail", "site:news.example.com"));
}

struct MinutesRow {
    const char* name;
    Phase phase;
    Setting<int> AppSettings::*setting;
    int highest;
};

class SetMinutes : public testing::TestWithParam<MinutesRow> {};

TEST_P(SetMinutes, ClampsAndAssignsThatPhaseAlone) {
    const auto [name, phase, setting, highest] = GetParam();
    WatchedStore store;
    AppSettings settings(store);
    const std::vector<std::pair<int, int>> cases{
        {std::numeric_limits<int>::min(), 1},      {0, 1}, {1, 1}, {highest, highest}, {highest + 1, highest},
        {std::numeric_limits<int>::max(), highest}};
    for (const auto& [minutes, expected] : cases) {
        settings.setMinutes(minutes, phase);
        EXPECT_EQ((settings.*setting)(), expected) << minutes;
    }
    EXPECT_THAT(store.values(), SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, SetMinutes,
    testing::Values(MinutesRow{"Focus", Phase::focus, &AppSettings::focusMinutes, 120},
                    MinutesRow{"ShortBreak", Phase::shortBreak, &AppSettings::shortBreakMinutes, 60},
                    MinutesRow{"LongBreak", Phase::longBreak, &AppSettings::longBreakMinutes, 60}),
    [](const auto& row) { return row.param.name; });

TEST(AppSettings, PresetAssignsTheThreeLengthsClamped) {
    WatchedStore store;
    AppSettings settings(store);
    settings.apply({90, 20, 30});
    EXPECT_EQ(settings.timerConfig(), (TimerConfig{90, 20, 30, 4, true, false}));
    EXPECT_THAT(store.written(), ElementsAre("focusMinutes", "shortBreakMinutes", "longBreakMinutes"));
    settings.apply({121, 0, 61});
    EXPECT_EQ(settings.timerConfig(), (TimerConfig{120, 1, 60, 4, true, false}));
}

// Export and import

TEST(AppSettings, ExportHoldsWhatIsStoredAndNothingElse) {
    WatchedStore store({{"currentTaskID", text("0F8FAD5B-D9CB-469F-A165-70867728950E")},
                        {"lastRunBuild", integer(7)},
                        {"menuBarDisplay", text("ring")},
                        {"playEndSound", integer(1)}});
    const AppSettings settings(store);
    EXPECT_EQ(settings.exportValues(),
              (SettingValues{{"menuBarDisplay", text("ring")}, {"playEndSound", integer(1)}}))
        << "as it is stored, not as it is read";
}

TEST(AppSettings, ImportOfAnExportMakesTheSettingsEqual) {
    WatchedStore store;
    AppSettings settings(store);
    for (const SettingRow& row : table())
        row.assignOther(settings);
    const SettingValues exported = settings.exportValues();
    EXPECT_THAT(exported, SizeIs(37));

    WatchedStore otherStore;
    AppSettings others(otherStore);
    Listener listener(others);
    others.importValues(exported);
    for (const SettingRow& row : table())
        EXPECT_EQ(row.read(others), isImported(row.key) ? row.other : row.initial) << row.key;
    EXPECT_EQ(listener.changes(), 34) << "once for each setting";
    EXPECT_THAT(listener.hooks(), ElementsAre(Hook::notifications, Hook::appearance, Hook::music, Hook::music,
                                              Hook::music, Hook::guard, Hook::guard, Hook::guard,
                                              Hook::focusMode, Hook::calendar, Hook::calendar))
        << "in the order of the table";

    others.importValues(exported);
    EXPECT_EQ(listener.changes(), 0);
    EXPECT_THAT(listener.hooks(), IsEmpty());
}

TEST(AppSettings, ImportTakesACompatibleKindOnly) {
    // By the kinds' order in `kinds`: a flag, an integer, a float, a text, a list.
    constexpr std::array<std::array<bool, 5>, 5> isTaken{{{true, false, false, false, false},
                                                          {false, true, true, false, false},
                                                          {false, true, true, false, false},
                                                          {false, false, false, true, false},
                                                          {false, false, false, false, true}}};
    for (std::size_t stored = 0; stored < kinds.size(); ++stored) {
        for (std::size_t incoming = 0; incoming < kinds.size(); ++incoming) {
            WatchedStore store({{"autoPlayMusic", kinds[stored]}});
            AppSettings settings(store);
            settings.importValues({{"autoPlayMusic", kinds[incoming]}});
            EXPECT_EQ(store.value("autoPlayMusic"),
                      isTaken[stored][incoming] ? kinds[incoming] : kinds[stored])
                << incoming << " over " << stored;
        }
    }
}

TEST(AppSettings, ImportOverNothingTakesAnyKind) {
    for (const SettingValue& incoming : kinds) {
        WatchedStore store;
        AppSettings settings(store);
        settings.importValues({{"autoPlayMusic", incoming}});
        EXPECT_EQ(store.value("autoPlayMusic"), incoming);
    }
}

TEST(AppSettings, ImportOfATextOverAStoredIntegerIsPassedOver) {
    WatchedStore store({{"focusMinutes", integer(50)}});
    AppSettings settings(store);
    settings.importValues({{"focusMinutes", text("40")}});
    EXPECT_EQ(settings.focusMinutes(), 50);
    EXPECT_EQ(store.value("focusMinutes"), integer(50));
}

TEST(AppSettings, ImportOfATextOverNothingIsStoredAndReadAsTheDefault) {
    WatchedStore store;
    AppSettings settings(store);
    settings.importValues({{"focusMinutes", text("40")}});
    EXPECT_EQ(settings.focusMinutes(), 25);
    EXPECT_EQ(store.value("focusMinutes"), text("40"));
}

TEST(AppSettings, ImportIsClampedByTheReloadAndWrittenBack) {
    WatchedStore store;
    AppSettings settings(store);
    settings.importValues({{"focusMinutes", integer(500)}});
    EXPECT_EQ(settings.focusMinutes(), 120);
    EXPECT_EQ(store.value("focusMinutes"), integer(120));
}

TEST(AppSettings, ImportLeavesAloneWhatItDoesNotBringOrKnow) {
    WatchedStore store({{"dayStartHour", integer(2)}, {"currentTaskID", text("mine")}});
    AppSettings settings(store);
    settings.importValues({{"focusMinutes", integer(50)},
                           {"currentTaskID", text("theirs")},
                           {"migratedFromVesk", {true}},
                           {"FocusMinutes", integer(60)}});
    EXPECT_EQ(settings.focusMinutes(), 50);
    EXPECT_EQ(settings.dayStartHour(), 2);
    EXPECT_EQ(store.values(), (SettingValues{{"currentTaskID", text("mine")},
                                             {"dayStartHour", integer(2)},
                                             {"focusMinutes", integer(50)}}));
}

TEST(AppSettings, ImportNeverChangesTheShortcuts) {
    WatchedStore store({{"focusModeEnabled", {true}}, {"focusOnShortcut", text("Quiet")}});
    AppSettings settings(store);
    settings.importValues({{"focusModeEnabled", {false}},
                           {"focusOnShortcut", text("Theirs")},
                           {"focusOffShortcut", text("Theirs")}});
    EXPECT_TRUE(settings.focusModeEnabled());
    EXPECT_EQ(settings.focusOnShortcut(), "Quiet");
    EXPECT_EQ(settings.focusOffShortcut(), "");
    EXPECT_THAT(store.written(), IsEmpty());
}

TEST(AppSettings, ImportGoesByTheKindThatIsStoredAndNotByThatOfTheSetting) {
    WatchedStore store({{"autoPlayMusic", integer(1)}});
    AppSettings settings(store);
    settings.importValues({{"autoPlayMusic", {false}}});
    EXPECT_TRUE(settings.autoPlayMusic()) << "a flag doesn't replace the number that is stored";
    EXPECT_EQ(store.value("autoPlayMusic"), integer(1));
}

// Hooks and listeners

TEST(AppSettings, MendingAtConstructionRunsNoHook) {
    WatchedStore store({{"musicVolume", {7.0}}});
    AppSettings settings(store);
    Listener listener(settings);
    EXPECT_THAT(listener.hooks(), IsEmpty());
    settings.reload();
    EXPECT_THAT(listener.hooks(), IsEmpty());
}

TEST(AppSettings, GraceOfADriftHasNoHook) {
    WatchedStore store;
    AppSettings settings(store);
    Listener listener(settings);
    settings.driftGraceSeconds.set(60);
    EXPECT_THAT(listener.hooks(), IsEmpty());
    EXPECT_EQ(listener.changes(), 1);
}

TEST(AppSettings, ViewsHearWhenTheValueIsStoredAndBeforeTheHook) {
    WatchedStore store;
    AppSettings settings(store);
    std::vector<std::string> order;
    const auto subscription = settings.changed.subscribe([&] {
        EXPECT_EQ(settings.calendarEnabled(), true);
        EXPECT_EQ(store.value("calendarEnabled"), SettingValue{true});
        order.emplace_back("view");
    });
    settings.onCalendarChange = [&] { order.emplace_back("hook"); };
    settings.calendarEnabled.set(true);
    EXPECT_THAT(order, ElementsAre("view", "hook"));
}

TEST(AppSettings, HookMayAssignItsOwnSetting) {
    WatchedStore store;
    AppSettings settings(store);
    int runs = 0;
    settings.onMusicSettingsChange = [&] {
        if (++runs == 1)
            settings.musicVolume.set(0.1);
    };
    settings.musicVolume.set(0.9);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(settings.musicVolume(), 0.1);
    EXPECT_EQ(store.value("musicVolume"), SettingValue{0.1});
}

TEST(AppSettings, ViewMayAssignTheSettingThatItHearsOf) {
    WatchedStore store;
    AppSettings settings(store);
    const auto subscription = settings.changed.subscribe([&] { settings.dayStartHour.set(3); });
    settings.dayStartHour.set(1);
    EXPECT_EQ(settings.dayStartHour(), 3);
    EXPECT_EQ(store.value("dayStartHour"), integer(3));
}

TEST(AppSettings, SettingMayBeAssignedItself) {
    WatchedStore store;
    AppSettings settings(store);
    settings.distractingApps.set({"org.chat"});
    settings.distractingApps.set(settings.distractingApps());
    EXPECT_THAT(settings.distractingApps(), ElementsAre("org.chat"));
}

TEST(AppSettings, HookMayAssignAnotherSettingDuringAnImport) {
    WatchedStore store;
    AppSettings settings(store);
    settings.onAppearanceChange = [&] { settings.glassLevel.set(GlassLevel::off); };
    settings.importValues({{"appearance", text("dark")}});
    EXPECT_EQ(settings.appearance(), AppearanceMode::dark);
    // What the store held when the import read it is in force at its end.
    EXPECT_EQ(settings.glassLevel(), GlassLevel::medium);
    EXPECT_EQ(store.value("glassLevel"), text("medium"));
}

TEST(AppSettings, HookMayReloadDuringAnImport) {
    WatchedStore store;
    AppSettings settings(store);
    Listener listener(settings);
    int runs = 0;
    settings.onNotificationsChange = [&] {
        ++runs;
        settings.reload();
    };
    settings.importValues({{"notificationsEnabled", {false}}, {"calendarEnabled", {true}}});
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(settings.calendarEnabled());
    EXPECT_THAT(listener.hooks(), ElementsAre(Hook::calendar)) << "each hook once";
}

} // namespace
} // namespace selvane
