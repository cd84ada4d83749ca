#include "Selvane/Platform/Linux/FileDefaultsStore.h"

#include "Support/FaultyFileSystem.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryFolder.h"

#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string fileName = "com.example.timer.json";
const std::string goodBytes = R"({
  "goal" : {
    "type" : "int",
    "value" : 50
  }
})";

class FileDefaultsStoreTest : public testing::Test {
protected:
    void open() {
        close();
        store = std::make_unique<FileDefaultsStore>(path, environment(), scheduler);
    }
    void close() { store.reset(); }

    void write(const std::string& bytes) const { folder.write("config/" + fileName, bytes); }
    [[nodiscard]] std::string bytes(const std::string& name = fileName) const {
        return folder.read("config/" + name);
    }

    /// Every name in the folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        if (std::filesystem::exists(path.parent_path())) {
            for (const auto& entry : std::filesystem::directory_iterator(path.parent_path()))
                result.push_back(entry.path().filename().string());
        }
        std::ranges::sort(result);
        return result;
    }
    /// The one name in the folder that is that of a set-aside file.
    [[nodiscard]] std::string setAside() const {
        std::vector<std::string> result = names();
        std::erase_if(result,
                      [](const std::string& name) { return name.find(".corrupt-") == std::string::npos; });
        EXPECT_THAT(result, SizeIs(1));
        return result.empty() ? "none" : result.front();
    }

    /// How often the file was replaced since the last question.
    int writes() {
        const auto count = std::ranges::count(files.calls(), "rename");
        files.heal();
        return static_cast<int>(count);
    }

    /// What stands in the log after `action`.
    static std::string logOf(const std::function<void()>& action) {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    StoreEnvironment environment() {
        return {&files, [] { return Date{}; }, [] { return Calendar::utc(); }};
    }

    test::TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "config" / fileName;
    test::FaultyFileSystem files;
    test::ManualScheduler scheduler;
    std::unique_ptr<FileDefaultsStore> store;
};

// Values

struct KindRow {
    const char* name;
    SettingValue value;
};

class FileDefaultsStoreKinds : public FileDefaultsStoreTest, public testing::WithParamInterface<KindRow> {};

TEST_P(FileDefaultsStoreKinds, IsReadAtOnceAndAfterARestart) {
    open();
    EXPECT_EQ(store->value("key"), std::nullopt);
    store->set("key", GetParam().value);
    EXPECT_EQ(store->value("key"), GetParam().value);
    open();
    EXPECT_EQ(store->value("key"), GetParam().value);
    EXPECT_EQ(store->value("other"), std::nullopt);
}

using Texts = SettingValue::Texts;

INSTANTIATE_TEST_SUITE_P(
    Rows, FileDefaultsStoreKinds,
    testing::Values(KindRow{"False", {false}}, KindRow{"True", {true}}, KindRow{"Zero", {std::int64_t{0}}},
                    KindRow{"LeastInteger", {std::numeric_limits<std::int64_t>::min()}},
                    KindRow{"GreatestInteger", {std::numeric_limits<std::int64_t>::max()}},
                    KindRow{"FloatOfZero", {0.0}}, KindRow{"WholeFloat", {3.0}}, KindRow{"Fraction", {0.1}},
                    KindRow{"GreatestFloat", {std::numeric_limits<double>::max()}},
                    KindRow{"EmptyText", {std::string()}}, KindRow{"Text", {std::string("a/\"b\"\n\\ ü 🎧")}},
                    KindRow{"NoTexts", {Texts{}}}, KindRow{"EmptyTexts", {Texts{"", ""}}},
                    KindRow{"Texts", {Texts{"b", "a", "b"}}}),
    [](const auto& row) { return row.param.name; });

TEST_F(FileDefaultsStoreTest, FileHasTheTypedForm) {
    open();
    store->set("volume", SettingValue{0.6});
    store->set("goal", SettingValue{std::int64_t{50}});
    store->set("sites", SettingValue{Texts{"example.com"}});
    store->set("sound", SettingValue{true});
    store->set("symbol", SettingValue{std::string("eye")});
    scheduler.turn();
    EXPECT_EQ(bytes(), R"({
  "goal" : {
    "type" : "int",
    "value" : 50
  },
  "sites" : {
    "type" : "strings",
    "value" : [
      "example.com"
    ]
  },
  "sound" : {
    "type" : "bool",
    "value" : true
  },
  "symbol" : {
    "type" : "string",
    "value" : "eye"
  },
  "volume" : {
    "type" : "double",
    "value" : 0.6
  }
})");
}

TEST_F(FileDefaultsStoreTest, EqualValuesGiveEqualBytesInWhateverOrderTheyCame) {
    open();
    for (const char* const key : {"b", "a", "c"})
        store->set(key, SettingValue{std::string(key)});
    close();
    const std::string first = bytes();
    std::filesystem::remove(path);
    open();
    for (const char* const key : {"c", "a", "x", "b"})
        store->set(key, SettingValue{std::string(key)});
    store->set("x", std::nullopt);
    close();
    EXPECT_EQ(bytes(), first);
}

TEST_F(FileDefaultsStoreTest, RemovedEntryIsGoneFromTheFileToo) {
    write(goodBytes);
    open();
    store->set("goal", std::nullopt);
    EXPECT_EQ(store->value("goal"), std::nullopt);
    open();
    EXPECT_EQ(store->value("goal"), std::nullopt);
    EXPECT_EQ(bytes().find("goal"), std::string::npos);
}

TEST_F(FileDefaultsStoreTest, OnlyItsUserMayReadIt) {
    open();
    store->set("goal", SettingValue{true});
    scheduler.turn();
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(path).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(path.parent_path()).permissions(), perms::owner_all);
}

TEST_F(FileDefaultsStoreTest, WhatAnotherWritesIsNotNoticed) {
    open();
    store->set("mine", SettingValue{true});
    scheduler.turn();
    write(goodBytes);
    EXPECT_EQ(store->value("goal"), std::nullopt);
    store->set("mine", SettingValue{false});
    scheduler.turn();
    EXPECT_EQ(bytes().find("goal"), std::string::npos);
}

struct FormlessRow {
    const char* name;
    std::string key;
    SettingValue value;
};

class FileDefaultsStoreFormless : public FileDefaultsStoreTest,
                                  public testing::WithParamInterface<FormlessRow> {};

TEST_P(FileDefaultsStoreFormless, StaysInMemoryAndCostsTheOthersNothing) {
    open();
    store->set("goal", SettingValue{std::int64_t{50}});
    store->set(GetParam().key, GetParam().value);
    EXPECT_TRUE(store->value(GetParam().key));
    EXPECT_EQ(logOf([this] { scheduler.turn(); }), "");
    EXPECT_EQ(bytes(), goodBytes);
    open();
    EXPECT_EQ(store->value(GetParam().key), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FileDefaultsStoreFormless,
    testing::Values(FormlessRow{"NotANumber", "a", {std::numeric_limits<double>::quiet_NaN()}},
                    FormlessRow{"Infinity", "x", {std::numeric_limits<double>::infinity()}},
                    FormlessRow{"TextOfWrongBytes", "a", {std::string("\xff")}},
                    FormlessRow{"ListWithWrongBytes", "x", {Texts{"good", "\xc3"}}},
                    FormlessRow{"KeyOfWrongBytes", "\xff", {true}}),
    [](const auto& row) { return row.param.name; });

// When it is written

TEST_F(FileDefaultsStoreTest, AbsentFileIsAnEmptyStoreAndStaysAbsent) {
    EXPECT_EQ(logOf([this] {
                  open();
                  scheduler.turn();
                  close();
              }),
              "");
    EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
}

TEST_F(FileDefaultsStoreTest, OneTurnWritesOnceHoweverManyChanges) {
    open();
    for (std::int64_t number = 0; number < 1000; ++number)
        store->set("goal", SettingValue{number});
    store->set("other", SettingValue{true});
    EXPECT_EQ(writes(), 0) << "nothing before the turn";
    scheduler.turn();
    EXPECT_EQ(writes(), 1);
    scheduler.turn();
    EXPECT_EQ(writes(), 0) << "nothing has changed since";
    store->set("goal", SettingValue{false});
    scheduler.turn();
    EXPECT_EQ(writes(), 1);
}

TEST_F(FileDefaultsStoreTest, EqualValueIsNotWrittenAgain) {
    write(goodBytes);
    open();
    store->set("goal", SettingValue{std::int64_t{50}});
    store->set("absent", std::nullopt);
    EXPECT_EQ(scheduler.waiting(), 0U);
    close();
    EXPECT_EQ(writes(), 0);
    open();
    store->set("goal", SettingValue{50.0});
    close();
    EXPECT_EQ(writes(), 1) << "another kind is another value";
}

TEST_F(FileDefaultsStoreTest, EndWritesWhatIsLeft) {
    open();
    store->set("goal", SettingValue{std::int64_t{50}});
    close();
    EXPECT_EQ(bytes(), goodBytes);
    EXPECT_EQ(writes(), 1);
    scheduler.turn();
    EXPECT_EQ(writes(), 0) << "the turn comes too late";
}

TEST_F(FileDefaultsStoreTest, EndWritesNothingThatWasWritten) {
    open();
    store->set("goal", SettingValue{std::int64_t{50}});
    scheduler.turn();
    EXPECT_EQ(writes(), 1);
    close();
    EXPECT_EQ(writes(), 0);
}

// Damage

struct DamageRow {
    const char* name;
    std::string bytes;
};

class FileDefaultsStoreDamage : public FileDefaultsStoreTest,
                                public testing::WithParamInterface<DamageRow> {};

TEST_P(FileDefaultsStoreDamage, IsSetAsideAndTheStoreIsEmpty) {
    write(GetParam().bytes);
    EXPECT_THAT(logOf([this] { open(); }), HasSubstr("couldn't read " + fileName));
    EXPECT_EQ(store->value("goal"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(path));
    store->set("goal", SettingValue{std::int64_t{50}});
    close();
    EXPECT_EQ(bytes(), goodBytes);
    EXPECT_THAT(setAside(), testing::MatchesRegex("com\\.example\\.timer\\.corrupt-[-0-9A-F]+\\.json"));
    EXPECT_EQ(bytes(setAside()), GetParam().bytes);
}

TEST_P(FileDefaultsStoreDamage, StaysWhereItStandsIfItCanBeNeitherMovedNorCopied) {
    write(GetParam().bytes);
    files.failAlways("move");
    files.failAlways("createForWriting");
    EXPECT_THAT(logOf([this] { open(); }), HasSubstr("settings won't be kept"));
    files.heal();
    store->set("goal", SettingValue{std::int64_t{50}});
    scheduler.turn();
    EXPECT_EQ(store->value("goal"), SettingValue{std::int64_t{50}}) << "kept in memory";
    close();
    EXPECT_EQ(bytes(), GetParam().bytes);
    EXPECT_THAT(names(), ElementsAre(fileName));
}

TEST_P(FileDefaultsStoreDamage, IsReplacedWhereItStandsIfItCouldBeCopied) {
    write(GetParam().bytes);
    files.failMovesOf(path);
    EXPECT_THAT(logOf([this] { open(); }), HasSubstr("copied it to"));
    store->set("goal", SettingValue{std::int64_t{50}});
    close();
    EXPECT_EQ(bytes(), goodBytes);
    EXPECT_EQ(bytes(setAside()), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FileDefaultsStoreDamage,
    testing::Values(DamageRow{"Empty", ""}, DamageRow{"CutOff", goodBytes.substr(0, goodBytes.size() - 1)},
                    DamageRow{"ZeroBytes", std::string(goodBytes.size(), '\0')}, DamageRow{"List", "[]"},
                    DamageRow{"Null", "null"}, DamageRow{"PlainValue", R"({"goal":50})"},
                    DamageRow{"UnknownType", R"({"goal":{"type":"date","value":"2026-03-05T14:07:09Z"}})"},
                    DamageRow{"WrongValue", R"({"goal":{"type":"int","value":true}})"},
                    DamageRow{
                        "OneOfMany",
                        R"({"goal":{"type":"int","value":50},"volume":{"type":"double","value":"loud"}})"},
                    DamageRow{"WrongBytes", "{\"goal\":{\"type\":\"string\",\"value\":\"\xff\"}}"}),
    [](const auto& row) { return row.param.name; });

TEST_F(FileDefaultsStoreTest, FileThatCannotBeOpenedIsSetAside) {
    write(goodBytes);
    files.failFirst("openForReading", std::errc::permission_denied);
    EXPECT_THAT(logOf([this] { open(); }), HasSubstr("moved it to"));
    EXPECT_EQ(store->value("goal"), std::nullopt);
    EXPECT_EQ(bytes(setAside()), goodBytes);
}

TEST_F(FileDefaultsStoreTest, FolderOfThatNameIsSetAside) {
    std::filesystem::create_directories(path / "inside");
    EXPECT_THAT(logOf([this] { open(); }), HasSubstr("moved it to"));
    store->set("goal", SettingValue{std::int64_t{50}});
    close();
    EXPECT_EQ(bytes(), goodBytes);
    EXPECT_TRUE(std::filesystem::is_directory(path.parent_path() / setAside() / "inside"));
}

// Failed writes

TEST_F(FileDefaultsStoreTest, FailedWriteIsToldOnceAndMadeWithTheNextChange) {
    write(goodBytes);
    open();
    files.failAlways("write", std::errc::no_space_on_device);
    store->set("first", SettingValue{true});
    EXPECT_THAT(logOf([this] { scheduler.turn(); }), HasSubstr("couldn't save the settings"));
    EXPECT_EQ(store->value("first"), SettingValue{true});
    EXPECT_EQ(bytes(), goodBytes) << "the old file is whole";
    EXPECT_EQ(scheduler.waiting(), 0U) << "not tried again by itself";

    store->set("second", SettingValue{true});
    EXPECT_EQ(logOf([this] { scheduler.turn(); }), "") << "a full disk is told once";
    files.heal();
    store->set("third", SettingValue{true});
    scheduler.turn();
    EXPECT_EQ(writes(), 1);

    files.failAlways("sync");
    store->set("fourth", SettingValue{true});
    EXPECT_THAT(logOf([this] { scheduler.turn(); }), HasSubstr("couldn't save the settings"))
        << "another failure is told again";
    files.heal();
    open();
    for (const char* const key : {"goal", "first", "second", "third", "fourth"})
        EXPECT_TRUE(store->value(key)) << key;
}

/// What a fault may do to a start, a change and an end: all it leaves behind are whole files.
class FileDefaultsStoreFaults : public FileDefaultsStoreTest {
protected:
    /// Runs once with the faults that `fail` asks for and once without. True if there was a fault.
    bool runWith(const std::function<void()>& fail, const std::string& before) {
        std::filesystem::remove_all(path.parent_path());
        write(before);
        fail();
        testing::internal::CaptureStderr();
        open();
        store->set("sound", SettingValue{true});
        scheduler.turn();
        EXPECT_EQ(store->value("sound"), SettingValue{true});
        store->set("symbol", SettingValue{std::string("eye")});
        close();
        const bool hadFault = files.hasFailed();
        EXPECT_EQ(files.openCount(), 0);
        files.heal();

        EXPECT_TRUE(isKept(before) || isGoalKept());
        open();
        store->set("sound", SettingValue{false});
        close();
        EXPECT_TRUE(isKept(before) || isGoalKept());
        open();
        EXPECT_EQ(store->value("sound"), SettingValue{false}) << "sane without the fault";
        close();
        testing::internal::GetCapturedStderr();
        return hadFault;
    }

    /// Whether the file of those bytes is there, in its place or set aside.
    [[nodiscard]] bool isKept(const std::string& before) const {
        return std::ranges::any_of(names(), [&](const std::string& name) { return bytes(name) == before; });
    }
    [[nodiscard]] bool isGoalKept() const {
        return std::ranges::any_of(names(), [&](const std::string& name) {
            const auto values = FileDefaultsStore::read(_posix, path.parent_path() / name);
            return values && values->contains("goal");
        });
    }

private:
    mutable PosixFileSystem _posix;
};

TEST_F(FileDefaultsStoreFaults, NoSingleFaultLosesWhatWasThere) {
    for (const std::string& before : {goodBytes, std::string("damaged")}) {
        std::size_t number = 1;
        while (runWith([&] { files.failCall(number); }, before)) {
            ASSERT_FALSE(HasFailure()) << "after a fault of call " << number << " on " << before;
            ++number;
        }
        EXPECT_GT(number, 20U) << "calls that were failed";
    }
}

TEST_F(FileDefaultsStoreFaults, NoDiskThatDiesLosesWhatWasThere) {
    for (const std::string& before : {goodBytes, std::string("damaged")}) {
        std::size_t number = 1;
        while (runWith([&] { files.failFrom(number); }, before)) {
            ASSERT_FALSE(HasFailure()) << "after faults from call " << number << " on " << before;
            ++number;
        }
        EXPECT_GT(number, 20U) << "calls that were failed";
    }
}

TEST_F(FileDefaultsStoreTest, WhatATurnWroteSurvivesAKill) {
    std::filesystem::create_directories(path.parent_path());
    for (int kill = 1; kill <= 15; ++kill) {
        std::filesystem::remove(path);
        QProcess writer;
        writer.start(QStringLiteral(SETTINGS_WRITER), {QString::fromStdString(path.string())},
                     QIODevice::ReadOnly);
        std::string said;
        while (std::ranges::count(said, '\n') < kill && writer.waitForReadyRead())
            said += writer.readAll().toStdString();
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished());
        ASSERT_EQ(writer.exitStatus(), QProcess::CrashExit);
        said += writer.readAll().toStdString();
        said.resize(said.rfind('\n'));
        const std::int64_t last = std::stoll(said.substr(said.rfind('\n') + 1));
        ASSERT_GE(last, kill);

        open();
        const auto count = store->value("count");
        ASSERT_TRUE(count);
        EXPECT_GE(count->integer(), last) << "what was said lies on the disk";
        EXPECT_LE(count->integer(), last + 1);
        close();
    }
}

// Files of others

TEST_F(FileDefaultsStoreTest, FileOfAnotherIsReadAsItStands) {
    write(goodBytes);
    const auto values = FileDefaultsStore::read(files, path);
    ASSERT_TRUE(values);
    EXPECT_EQ(*values, (SettingValues{{"goal", SettingValue{std::int64_t{50}}}}));
    EXPECT_EQ(bytes(), goodBytes);
    EXPECT_THAT(names(), ElementsAre(fileName));
}

TEST_F(FileDefaultsStoreTest, AbsentFileOfAnotherIsNotMade) {
    EXPECT_EQ(FileDefaultsStore::read(files, path), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
}

TEST_F(FileDefaultsStoreTest, DamagedFileOfAnotherStaysWhereItIs) {
    for (const char* const damaged : {"", "{", "[]", R"({"goal":50})"}) {
        write(damaged);
        EXPECT_EQ(logOf([this] { EXPECT_EQ(FileDefaultsStore::read(files, path), std::nullopt); }), "");
        EXPECT_EQ(bytes(), damaged);
        EXPECT_THAT(names(), ElementsAre(fileName));
    }
}

} // namespace
} // namespace selvane
