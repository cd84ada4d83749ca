#include "Selvane/Platform/Linux/InstalledApplications.h"

#include "Selvane/Platform/Linux/DefaultApplications.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto name = "org.example.Player.desktop";

/// A user's folders, a system's, and a program in PATH.
class InstalledApplicationsTest : public testing::Test {
protected:
    InstalledApplicationsTest() { haveProgram("bin/player"); }

    void haveProgram(const std::string& place) const {
        folder.write(place, "#!/bin/sh\n");
        std::filesystem::permissions(folder.path() / place, std::filesystem::perms::owner_all);
    }
    /// An entry in one of the folders of data.
    void haveEntry(const std::string& more, const std::string& data = "user") const {
        folder.write(data + "/applications/" + name, "[Desktop Entry]\nType=Application\n" + more);
    }
    [[nodiscard]] bool isInstalled() const { return applications.find(name).has_value(); }

    TemporaryFolder folder;
    EnvironmentVariable path{"PATH", (folder.path() / "bin").string()};
    PosixFileSystem files;
    ApplicationFolders folders{{folder.path() / "user", folder.path() / "system"},
                               {folder.path() / "settings", folder.path() / "settings of the system"}};
    InstalledApplications applications{files, [this] { return folders; }};
    std::vector<std::string> desktops{"ubuntu", "GNOME"};
    DefaultApplications defaults{files, [this] { return folders; }, [this] { return desktops; }};
};

struct Entry {
    const char* name;
    const char* keys;
    bool isInstalled;
};

void PrintTo(const Entry& entry, std::ostream* stream) {
    *stream << entry.name;
}

class InstalledApplicationsTable : public InstalledApplicationsTest,
                                   public testing::WithParamInterface<Entry> {};

TEST_P(InstalledApplicationsTable, AnEntryCountsIfItsProgramIsThere) {
    haveEntry(GetParam().keys);
    EXPECT_EQ(isInstalled(), GetParam().isInstalled);
}

INSTANTIATE_TEST_SUITE_P(
    All, InstalledApplicationsTable,
    testing::Values(Entry{"Program", "Exec=player %U\n", true}, Entry{"NoProgram", "Exec=other %U\n", false},
                    Entry{"NoExec", "Name=x\n", false},
                    Entry{"TryExec", "TryExec=player\nExec=player\n", true},
                    Entry{"TryExecThatIsNotThere", "TryExec=other\nExec=player\n", false},
                    Entry{"ProgramOutsideOfPath", "TryExec=player\nExec=/no/such/player\n", false},
                    Entry{"Activatable", "DBusActivatable=true\n", true},
                    Entry{"ActivatableWithoutItsProgram", "DBusActivatable=true\nTryExec=other\n", false},
                    Entry{"Hidden", "Hidden=true\nExec=player\n", false},
                    Entry{"NotShown", "NoDisplay=true\nExec=player\n", true},
                    Entry{"BadQuotes", "Exec=player \"\n", false},
                    Entry{"OtherType", "Type=Link\nExec=player\n", false}),
    [](const auto& test) { return test.param.name; });

TEST_F(InstalledApplicationsTest, TheWeightiestEntryCountsAlone) {
    EXPECT_FALSE(isInstalled());
    haveEntry("Exec=player --system\n", "system");
    ASSERT_TRUE(isInstalled());
    EXPECT_EQ(applications.find(name)->value("Exec"), "player --system");
    haveEntry("Exec=player --user\n");
    EXPECT_EQ(applications.find(name)->value("Exec"), "player --user");
    haveEntry("Hidden=true\n");
    EXPECT_FALSE(isInstalled()) << "the user took it away";
}

TEST_F(InstalledApplicationsTest, APathIsNoName) {
    haveEntry("Exec=player\n");
    EXPECT_FALSE(applications.find("../applications/" + std::string(name)));
    EXPECT_FALSE(applications.find(""));
}

TEST_F(InstalledApplicationsTest, AFileMayLieInAnyOfTheFolders) {
    EXPECT_FALSE(applications.hasFile("mpv/scripts/mpris.so"));
    folder.write("settings of the system/mpv/scripts/mpris.so", "");
    EXPECT_TRUE(applications.hasFile("mpv/scripts/mpris.so"));
}

TEST_F(InstalledApplicationsTest, TheDesktopsChoiceIsReadFromTheWeightiestListFirst) {
    EXPECT_THAT(defaults.of("audio/mpeg"), IsEmpty());
    folder.write("system/applications/mimeapps.list", "[Default Applications]\naudio/mpeg=system.desktop\n");
    folder.write("settings/mimeapps.list", "[Added Associations]\naudio/mpeg=added.desktop\n"
                                           "[Default Applications]\naudio/ogg=other.desktop;\n"
                                           " audio/mpeg = one.desktop ; two.desktop;\n\n"
                                           "[Removed Associations]\naudio/mpeg=removed.desktop\n");
    folder.write("settings/gnome-mimeapps.list", "[Default Applications]\naudio/mpeg=gnome.desktop");
    EXPECT_THAT(defaults.of("audio/mpeg"),
                ElementsAre("gnome.desktop", "one.desktop", "two.desktop", "system.desktop"));
    desktops = {"KDE"};
    EXPECT_THAT(defaults.of("audio/mpeg"), ElementsAre("one.desktop", "two.desktop", "system.desktop"));
}

TEST(ApplicationFolders, AreTheUsersThoseOfTheSystemAndWhatFlatpakAndSnapExport) {
    const EnvironmentVariable user("XDG_DATA_HOME", "/home/me/data");
    const EnvironmentVariable system("XDG_DATA_DIRS",
                                     "/usr/share/gnome/:relative:/usr/share:/var/lib/flatpak/exports/share");
    const EnvironmentVariable settings("XDG_CONFIG_HOME", "/home/me/settings");
    const EnvironmentVariable systemSettings("XDG_CONFIG_DIRS", "/etc/xdg");
    const ApplicationFolders folders = ApplicationFolders::current();
    EXPECT_THAT(folders.data, ElementsAre("/home/me/data", "/usr/share/gnome", "/usr/share",
                                          "/var/lib/flatpak/exports/share",
                                          "/home/me/data/flatpak/exports/share", "/var/lib/snapd/desktop"));
    EXPECT_THAT(folders.settings, ElementsAre("/home/me/settings", "/etc/xdg", "/etc"));
}

TEST(ApplicationFolders, HaveTheUsualPlacesWhereTheSessionNamesNone) {
    const EnvironmentVariable home("HOME", "/home/me");
    const EnvironmentVariable user("XDG_DATA_HOME", std::nullopt);
    const EnvironmentVariable system("XDG_DATA_DIRS", "");
    EXPECT_THAT(ApplicationFolders::current().data,
                ElementsAre("/home/me/.local/share", "/usr/local/share", "/usr/share",
                            "/home/me/.local/share/flatpak/exports/share", "/var/lib/flatpak/exports/share",
                            "/var/lib/snapd/desktop"));
}

} // namespace
} // namespace selvane::test
