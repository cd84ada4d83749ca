#include "Selvane/Platform/Linux/AutostartEntry.h"

#include "Support/EventLoop.h"
#include "Support/FakeLoginItem.h"
#include "Support/FaultyFileSystem.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {
namespace {

using std::filesystem::path;
using testing::HasSubstr;

constexpr auto name = "autostart/com.lorbin.selvane.desktop";

/// An account with folders for the user's settings and for those of two systems, and a program.
class AutostartEntryTest : public testing::Test {
protected:
    AutostartEntryTest() { haveProgram("bin/selvane"); }

    void haveProgram(const std::string& file, const std::string& script = "#!/bin/sh\n") {
        folder.write(file, script);
        program = folder.path() / file;
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    void haveUserEntry(const std::string& text) const { folder.write("user/" + std::string(name), text); }
    void haveSystemEntry(const std::string& text, const char* system = "system") const {
        folder.write(std::string(system) + "/" + name, text);
    }

    [[nodiscard]] std::string userEntry() const { return folder.read("user/" + std::string(name)); }
    [[nodiscard]] path userFile() const { return folder.path() / "user" / name; }
    /// The names beside the user's entry.
    [[nodiscard]] std::vector<std::string> userFiles() const {
        std::vector<std::string> names;
        for (const auto& file : std::filesystem::directory_iterator(userFile().parent_path()))
            names.push_back(file.path().filename().string());
        return names;
    }

    /// The smallest entry that starts the program.
    [[nodiscard]] std::string starting(const std::string& more = "") const {
        return "[Desktop Entry]\nType=Application\nName=Selvane\nExec=" + program.string() + "\n" + more;
    }

    TemporaryFolder folder;
    path program;
    std::vector<std::string> desktops{"ubuntu", "GNOME"};
    FaultyFileSystem files;
    AutostartEntry item{{
        .fileSystem = &files,
        .userSettings = [this] { return folder.path() / "user"; },
        .systemSettings =
            [this] {
                return std::vector{folder.path() / "system", folder.path() / "system2"};
            },
        .program = [this] { return program; },
        .desktops = [this] { return desktops; },
    }};
};

TEST_F(AutostartEntryTest, ThereIsNoneAtFirst) {
    EXPECT_FALSE(item.isRegistered());
    EXPECT_TRUE(item.unregister()) << "nothing is to be done";
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "user"));
}

TEST_F(AutostartEntryTest, ARegisteredProgramHasAnEntryOfItsOwn) {
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    EXPECT_EQ(userEntry(), "[Desktop Entry]\nType=Application\nName=Selvane\nIcon=com.lorbin.selvane\nExec=" +
                               program.string() + "\nTryExec=" + program.string() + "\n");
    EXPECT_THAT(userFiles(), testing::ElementsAre("com.lorbin.selvane.desktop"));
}

TEST_F(AutostartEntryTest, AnUnregisteredOneIsHidden) {
    ASSERT_TRUE(item.registerItem());
    ASSERT_TRUE(item.unregister());
    EXPECT_FALSE(item.isRegistered());
    EXPECT_THAT(userEntry(), HasSubstr("\nHidden=true\n"));
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    EXPECT_THAT(userEntry(), testing::Not(HasSubstr("Hidden")));
}

TEST_F(AutostartEntryTest, WhatTheUserAddedStays) {
    const std::string added = "# mine\nX-GNOME-Autostart-Delay=20\nName[de]=Uhr\n\n[X-Mine]\nHidden=true\n";
    haveUserEntry(starting(added));
    ASSERT_TRUE(item.unregister());
    EXPECT_FALSE(item.isRegistered());
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    EXPECT_EQ(userEntry(), "[Desktop Entry]\nType=Application\nName=Selvane\nExec=" + program.string() +
                               "\n# mine\nX-GNOME-Autostart-Delay=20\nName[de]=Uhr\nIcon=com.lorbin.selvane\n"
                               "TryExec=" +
                               program.string() + "\n\n[X-Mine]\nHidden=true\n");
}

TEST_F(AutostartEntryTest, TheDesktopsThatTheUserChoseStayWhereThisIsOneOfThem) {
    const std::string chosen = "OnlyShowIn=XFCE;GNOME;\n";
    haveUserEntry(starting(chosen + "Hidden=true\n"));
    ASSERT_TRUE(item.registerItem());
    EXPECT_THAT(userEntry(), HasSubstr("\n" + chosen));
    desktops = {"KDE"};
    EXPECT_FALSE(item.isRegistered());
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    EXPECT_THAT(userEntry(), testing::Not(HasSubstr("OnlyShowIn")));
}

TEST_F(AutostartEntryTest, ADesktopWithoutANameStartsWhatIsMeantForAll) {
    desktops = {};
    haveUserEntry(starting("NotShowIn=GNOME;\n"));
    EXPECT_TRUE(item.isRegistered());
    haveUserEntry(starting("OnlyShowIn=GNOME;\n"));
    EXPECT_FALSE(item.isRegistered());
}

TEST_F(AutostartEntryTest, AProgramThatHasMovedIsRegisteredWhereItIs) {
    ASSERT_TRUE(item.registerItem());
    std::filesystem::remove(program);
    EXPECT_FALSE(item.isRegistered()) << "an entry of a program that is gone starts nothing";
    haveProgram("opt/selvane");
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    EXPECT_THAT(userEntry(), HasSubstr("\nExec=" + program.string() + "\n"));
}

TEST_F(AutostartEntryTest, ToDoItAgainWritesNothing) {
    ASSERT_TRUE(item.registerItem());
    files.failFrom(100);
    ASSERT_TRUE(item.registerItem());
    EXPECT_THAT(files.calls(), testing::Not(testing::Contains("write")));
    ASSERT_TRUE(item.unregister());
    files.failFrom(100);
    ASSERT_TRUE(item.unregister());
    EXPECT_THAT(files.calls(), testing::Not(testing::Contains("write")));
}

struct Row {
    const char* name;
    /// "@" stands for the smallest entry that starts the program; null for no file.
    const char* user;
    const char* system;
    bool isRegistered;
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.name;
}

class AutostartEntryTable : public AutostartEntryTest, public testing::WithParamInterface<Row> {
protected:
    AutostartEntryTable() {
        if (GetParam().user)
            haveUserEntry(expanded(GetParam().user));
        if (GetParam().system)
            haveSystemEntry(expanded(GetParam().system));
    }

private:
    [[nodiscard]] std::string expanded(std::string text) const {
        return text.starts_with('@') ? starting(text.substr(1)) : text;
    }
};

TEST_P(AutostartEntryTable, IsReadAsDesktopsReadIt) {
    EXPECT_EQ(item.isRegistered(), GetParam().isRegistered);
}

TEST_P(AutostartEntryTable, CanBeSwitchedOnAndOffAndOn) {
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
    ASSERT_TRUE(item.unregister());
    EXPECT_FALSE(item.isRegistered());
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(item.isRegistered());
}

TEST_P(AutostartEntryTable, CanBeSwitchedOffAtOnce) {
    ASSERT_TRUE(item.unregister());
    EXPECT_FALSE(item.isRegistered());
}

INSTANTIATE_TEST_SUITE_P(
    All, AutostartEntryTable,
    testing::Values(Row{"Neither", nullptr, nullptr, false}, Row{"User", "@", nullptr, true},
                    Row{"UserHidden", "@Hidden=true\n", nullptr, false},
                    Row{"UserNotHidden", "@Hidden=false\n", nullptr, true},
                    Row{"UserSwitchedOff", "@X-GNOME-Autostart-enabled=false\n", nullptr, false},
                    Row{"UserSwitchedOn", "@X-GNOME-Autostart-enabled=true\n", nullptr, true},
                    Row{"UserMissingProgram", "@TryExec=/there/is/none\n", nullptr, false},
                    Row{"UserProgramInPath", "@TryExec=sh\n", nullptr, true},
                    Row{"UserProgramNotInPath", "@TryExec=there-is-none\n", nullptr, false},
                    Row{"UserFolderForProgram", "@TryExec=/usr\n", nullptr, false},
                    Row{"UserOnlyHere", "@OnlyShowIn=XFCE;GNOME;\n", nullptr, true},
                    Row{"UserOnlyHereWithoutLastSemicolon", "@OnlyShowIn=XFCE;GNOME\n", nullptr, true},
                    Row{"UserOnlyElsewhere", "@OnlyShowIn=XFCE;\n", nullptr, false},
                    Row{"UserOnlyWhereTheNameIsLonger", "@OnlyShowIn=GNOME-Classic;\n", nullptr, false},
                    Row{"UserOnlyNowhere", "@OnlyShowIn=\n", nullptr, false},
                    Row{"UserNotHere", "@NotShowIn=KDE;GNOME;\n", nullptr, false},
                    Row{"UserNotElsewhere", "@NotShowIn=KDE;XFCE;\n", nullptr, true},
                    Row{"UserFirstNameDecides", "@OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n", nullptr, false},
                    Row{"UserEmpty", "", nullptr, false},
                    Row{"UserWithoutCommand", "[Desktop Entry]\nName=x\n", nullptr, false},
                    Row{"UserOtherGroup", "[Other]\nExec=sh\n", nullptr, false},
                    Row{"System", nullptr, "@", true}, Row{"SystemHidden", nullptr, "@Hidden=true\n", false},
                    Row{"SystemSwitchedOff", nullptr, "@X-GNOME-Autostart-enabled=false\n", false},
                    Row{"SystemOnlyElsewhere", nullptr, "@OnlyShowIn=XFCE;\n", false},
                    Row{"UserHidesSystem", "@Hidden=true\n", "@", false},
                    Row{"UserOverridesHiddenSystem", "@", "@Hidden=true\n", true}),
    [](const auto& test) { return test.param.name; });

TEST_F(AutostartEntryTest, OfSeveralSystemsTheFirstThatHasAnEntryCounts) {
    haveSystemEntry(starting("Hidden=true\n"));
    haveSystemEntry(starting(), "system2");
    EXPECT_FALSE(item.isRegistered());
    std::filesystem::remove(folder.path() / "system" / name);
    EXPECT_TRUE(item.isRegistered());
}

TEST_F(AutostartEntryTest, WhereTheSystemStartsItTheUserNeedsNoEntry) {
    haveSystemEntry(starting());
    ASSERT_TRUE(item.registerItem());
    EXPECT_FALSE(std::filesystem::exists(userFile()));
    ASSERT_TRUE(item.unregister());
    EXPECT_EQ(userEntry(), "[Desktop Entry]\nType=Application\nName=Selvane\nHidden=true\n");
}

TEST_F(AutostartEntryTest, ALinkIsReplacedAndWhatItPointsToStays) {
    folder.write("elsewhere.desktop", starting());
    std::filesystem::create_directories(userFile().parent_path());
    std::filesystem::create_symlink(folder.path() / "elsewhere.desktop", userFile());
    EXPECT_TRUE(item.isRegistered());
    ASSERT_TRUE(item.unregister());
    EXPECT_FALSE(item.isRegistered());
    EXPECT_EQ(folder.read("elsewhere.desktop"), starting());
}

TEST_F(AutostartEntryTest, AMaskedEntryStaysMasked) {
    std::filesystem::create_directories(userFile().parent_path());
    std::filesystem::create_symlink("/dev/null", userFile());
    haveSystemEntry(starting());
    EXPECT_FALSE(item.isRegistered());
    const auto registered = item.registerItem();
    ASSERT_FALSE(registered);
    EXPECT_THAT(registered.error(), HasSubstr(userFile().string()));
    EXPECT_EQ(std::filesystem::read_symlink(userFile()), "/dev/null");
}

TEST_F(AutostartEntryTest, AFileThatCannotBeReadStaysAsItIs) {
    haveUserEntry(starting("X-Mine=1\n"));
    files.failAlways("read");
    EXPECT_FALSE(item.isRegistered());
    EXPECT_FALSE(item.registerItem());
    EXPECT_FALSE(item.unregister());
    EXPECT_EQ(userEntry(), starting("X-Mine=1\n"));
}

TEST_F(AutostartEntryTest, AFailureIsToldAndChangesNothing) {
    // Each call that the change makes fails once.
    for (const bool isOn : {false, true}) {
        for (std::size_t call = 1;; ++call) {
            files.heal();
            ASSERT_TRUE(isOn ? item.registerItem() : item.unregister());
            const std::string before = userEntry();
            files.failCall(call);
            const auto outcome = isOn ? item.unregister() : item.registerItem();
            const bool hasFailed = files.hasFailed();
            files.heal();
            if (outcome) {
                EXPECT_EQ(item.isRegistered(), !isOn) << "call " << call;
                if (!hasFailed)
                    break;
            } else {
                EXPECT_EQ(item.isRegistered(), isOn) << "call " << call;
                EXPECT_EQ(userEntry(), before) << "call " << call;
                EXPECT_THAT(outcome.error(), HasSubstr("can't be changed: Input/output error."));
            }
            if (std::filesystem::exists(userFile().parent_path())) {
                EXPECT_LE(userFiles().size(), 1U) << "call " << call;
            }
            ASSERT_LT(call, 100U);
        }
    }
}

TEST_F(AutostartEntryTest, AReadOnlyFolderIsTold) {
    files.failAlways("createForWriting", std::errc::read_only_file_system);
    const auto outcome = item.registerItem();
    ASSERT_FALSE(outcome);
    EXPECT_THAT(outcome.error(), testing::EndsWith("can't be changed: Read-only file system."));
    EXPECT_FALSE(item.isRegistered());
}

/// What GLib, which reads such entries on many desktops, starts. Only a percent sign is missing: GLib looks
/// for the program before it turns two of them into one.
TEST_F(AutostartEntryTest, AnotherReaderStartsTheProgramWhateverItsPath) {
    for (const char* const odd : {"plain", "with blank", "$HOME `x` \"q\" 'a'", "back\\slash\\n",
                                  "a;b&c|d<e>", "caf\xc3\xa9 #1 (copy) ~ * ?", "new\nline\ttab"}) {
        haveProgram(std::string(odd) + "/selvane", "#!/bin/sh\n: >\"${0%/*}/started\"\n");
        ASSERT_TRUE(item.registerItem());
        EXPECT_TRUE(item.isRegistered()) << odd;
        const std::string command = "/usr/bin/python3 -c 'import sys, gi; from gi.repository import Gio; "
                                    "Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch([], None)' " +
                                    userFile().string();
        ASSERT_EQ(std::system(command.c_str()), 0) << odd;
        EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(program.parent_path() / "started"); }))
            << odd;
    }
}

TEST_F(AutostartEntryTest, TheValidatorHasNothingToSay) {
    const std::string validate = "desktop-file-validate --warn-kde " + userFile().string() + " >&2";
    ASSERT_TRUE(item.registerItem());
    EXPECT_EQ(std::system(validate.c_str()), 0);
    ASSERT_TRUE(item.unregister());
    EXPECT_EQ(std::system(validate.c_str()), 0);
}

/// The contract of the port, kept by the entry and by the stand-in of other tests.
class LoginItemContract : public AutostartEntryTest, public testing::WithParamInterface<const char*> {
protected:
    LoginItem& any() {
        return std::string_view(GetParam()) == "Entry" ? static_cast<LoginItem&>(item) : _fake;
    }
    void fail() {
        files.failAlways("createForWriting");
        _fake.fail("no");
    }
    void heal() {
        files.heal();
        _fake.fail(std::nullopt);
    }

private:
    FakeLoginItem _fake;
};

TEST_P(LoginItemContract, IsWhatItWasLastMade) {
    EXPECT_FALSE(any().isRegistered());
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(any().registerItem());
        EXPECT_TRUE(any().registerItem());
        EXPECT_TRUE(any().isRegistered());
        EXPECT_TRUE(any().unregister());
        EXPECT_TRUE(any().unregister());
        EXPECT_FALSE(any().isRegistered());
    }
}

TEST_P(LoginItemContract, StaysAsItWasWhenAChangeFails) {
    fail();
    const auto registered = any().registerItem();
    ASSERT_FALSE(registered);
    EXPECT_FALSE(registered.error().empty());
    EXPECT_FALSE(any().isRegistered());
    heal();
    ASSERT_TRUE(any().registerItem());
    fail();
    EXPECT_FALSE(any().unregister());
    EXPECT_TRUE(any().isRegistered());
}

INSTANTIATE_TEST_SUITE_P(All, LoginItemContract, testing::Values("Entry", "Fake"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
} // namespace selvane::test
