#include "SelvaneCore/AtomicFile.h"

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "Support/FaultyFileSystem.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace selvane {
namespace {

using Path = std::filesystem::path;
using test::FaultyFileSystem;

class AtomicFileTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            result.push_back(entry.path().filename().string());
        std::ranges::sort(result);
        return result;
    }

    [[nodiscard]] static unsigned mode(const Path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    test::TemporaryFolder folder;
    FaultyFileSystem files;
    Path file = folder.path() / "file.json";
};

TEST_F(AtomicFileTest, TakesTheStepsInOrder) {
    ASSERT_TRUE(AtomicFile::write(files, file, "new"));
    EXPECT_EQ(files.calls(),
              (std::vector<std::string>{"readLink", "list", "createForWriting", "write", "sync", "close",
                                        "rename", "openFolder", "sync", "close"}));
    EXPECT_EQ(folder.read("file.json"), "new");
    EXPECT_EQ(files.openCount(), 0);
}

TEST_F(AtomicFileTest, ReplacesTheWholeFile) {
    folder.write("file.json", "an old text that is longer");
    ASSERT_TRUE(AtomicFile::write(files, file, "new"));
    EXPECT_EQ(folder.read("file.json"), "new");
    ASSERT_TRUE(AtomicFile::write(files, file, ""));
    EXPECT_EQ(folder.read("file.json"), "");
    EXPECT_EQ(names(), std::vector<std::string>{"file.json"});
}

TEST_F(AtomicFileTest, GoesOnAfterShortWrites) {
    files.limitWrites(3);
    ASSERT_TRUE(AtomicFile::write(files, file, "0123456789"));
    EXPECT_EQ(folder.read("file.json"), "0123456789");
    EXPECT_EQ(std::ranges::count(files.calls(), "write"), 4);
}

TEST_F(AtomicFileTest, ADiskThatTakesNothingIsAnError) {
    files.limitWrites(0);
    const auto written = AtomicFile::write(files, file, "new");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().operation, "write");
    EXPECT_TRUE(names().empty());
}

TEST_F(AtomicFileTest, OnlyTheUserMayReadTheFile) {
    const mode_t old = ::umask(0);
    EXPECT_TRUE(AtomicFile::write(files, file, "new"));
    ::umask(old);
    EXPECT_EQ(mode(file), 0600U);
    std::filesystem::permissions(file, std::filesystem::perms{0644});
    EXPECT_TRUE(AtomicFile::write(files, file, "newer"));
    EXPECT_EQ(mode(file), 0600U);
}

TEST_F(AtomicFileTest, LeftoversOfThisTargetAreRemovedAndNothingElse) {
    folder.write(".file.json.saving-0A1B2C", "half a te");
    folder.write(".file.json.saving-FFFFFF", "half a te");
    const std::vector<std::string> others{".file.json.saving-",        ".file.json.saving-0A1B2",
                                          ".file.json.saving-0A1B2CD", ".file.json.saving-0a1b2c",
                                          ".other.json.saving-0A1B2C", "file.json.saving-0A1B2C"};
    for (const std::string& name : others)
        folder.write(name, "not ours");
    ASSERT_TRUE(AtomicFile::write(files, file, "new"));
    std::vector<std::string> expected = others;
    expected.emplace_back("file.json");
    std::ranges::sort(expected);
    EXPECT_EQ(names(), expected);
}

TEST_F(AtomicFileTest, AFolderThatCannotBeListedIsNoReasonNotToSave) {
    files.failAlways("list");
    EXPECT_TRUE(AtomicFile::write(files, file, "new"));
    EXPECT_EQ(folder.read("file.json"), "new");
}

TEST_F(AtomicFileTest, ALinkStaysAndItsTargetIsReplaced) {
    folder.write("elsewhere/real.json", "old");
    std::filesystem::create_symlink("elsewhere/real.json", folder.path() / "second");
    std::filesystem::create_symlink(folder.path() / "second", file);
    ASSERT_TRUE(AtomicFile::write(files, file, "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(folder.read("elsewhere/real.json"), "new");
    EXPECT_EQ(names(), (std::vector<std::string>{"elsewhere", "file.json", "second"}));
}

TEST_F(AtomicFileTest, ALinkToNothingMakesItsTarget) {
    std::filesystem::create_symlink("real.json", file);
    ASSERT_TRUE(AtomicFile::write(files, file, "new"));
    EXPECT_EQ(folder.read("real.json"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(file));
}

TEST_F(AtomicFileTest, LinksInACircleAreAnError) {
    std::filesystem::create_symlink("file.json", folder.path() / "other");
    std::filesystem::create_symlink("other", file);
    const auto written = AtomicFile::write(files, file, "new");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(names(), (std::vector<std::string>{"file.json", "other"}));
}

TEST_F(AtomicFileTest, AFolderInTheWayIsAnErrorAndStays) {
    std::filesystem::create_directory(file);
    const auto written = AtomicFile::write(files, file, "new");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().operation, "rename");
    EXPECT_EQ(names(), std::vector<std::string>{"file.json"});
}

TEST_F(AtomicFileTest, WithoutItsFolderNothingIsWritten) {
    const auto written = AtomicFile::write(files, folder.path() / "none/file.json", "new");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, std::errc::no_such_file_or_directory);
    EXPECT_EQ(written.error().localizedDescription(), "No such file or directory");
    EXPECT_NE(written.error().description().find("none/.file.json.saving-"), std::string::npos);
}

TEST_F(AtomicFileTest, AnyOneCallMayFail) {
    int lost = 0;
    std::size_t number = 1;
    for (;; ++number) {
        folder.write("file.json", "old");
        files.heal();
        files.limitWrites(2);
        files.failCall(number);
        const auto written = AtomicFile::write(files, file, "entirely new");
        EXPECT_EQ(files.openCount(), 0);
        if (!files.hasFailed()) {
            EXPECT_TRUE(written);
            break;
        }
        const std::string failed =
            *std::ranges::find_if(files.calls(), [](auto& name) { return name.ends_with('!'); });
        const bool isRenamed = std::ranges::count(files.calls(), "rename") == 1;
        EXPECT_EQ(written.has_value(), failed == "list!") << failed;
        EXPECT_EQ(folder.read("file.json"), isRenamed ? "entirely new" : "old") << failed;
        EXPECT_EQ(names(), std::vector<std::string>{"file.json"}) << failed;
        lost += folder.read("file.json") != (isRenamed ? "entirely new" : "old");

        files.heal();
        EXPECT_TRUE(AtomicFile::write(files, file, "newer"));
        EXPECT_EQ(folder.read("file.json"), "newer");
    }
    EXPECT_EQ(number, 16U) << "the steps, with six writes of two bytes";
    std::cout << number - 1 << " calls failed one by one: " << lost << " lost\n";
}

TEST_F(AtomicFileTest, EveryCallMayFailFromAnyOneOn) {
    for (std::size_t number = 1; number <= 10; ++number) {
        folder.write("file.json", "old");
        files.heal();
        files.failFrom(number);
        EXPECT_FALSE(AtomicFile::write(files, file, "new"));
        EXPECT_EQ(files.openCount(), 0);
        EXPECT_EQ(folder.read("file.json"), number <= 7 ? "old" : "new");
        // The temporary may stay now, since it can't be removed either; the next write removes it.
        EXPECT_LE(names().size(), 2U);
        files.heal();
        EXPECT_TRUE(AtomicFile::write(files, file, "newer"));
        EXPECT_EQ(folder.read("file.json"), "newer");
        EXPECT_EQ(names(), std::vector<std::string>{"file.json"});
    }
}

TEST_F(AtomicFileTest, FoldersAreMadeWithMode700) {
    const mode_t old = ::umask(0);
    EXPECT_TRUE(AtomicFile::makeFolders(files, folder.path() / "one/two/three"));
    ::umask(old);
    for (const auto* const name : {"one", "one/two", "one/two/three"})
        EXPECT_EQ(mode(folder.path() / name), 0700U) << name;
}

TEST_F(AtomicFileTest, AFolderThatExistsKeepsItsMode) {
    std::filesystem::create_directory(folder.path() / "one");
    std::filesystem::permissions(folder.path() / "one", std::filesystem::perms{0755});
    EXPECT_TRUE(AtomicFile::makeFolders(files, folder.path() / "one"));
    EXPECT_TRUE(AtomicFile::makeFolders(files, folder.path() / "one/two"));
    EXPECT_EQ(mode(folder.path() / "one"), 0755U);
    EXPECT_EQ(mode(folder.path() / "one/two"), 0700U);
}

TEST_F(AtomicFileTest, AFileInTheWayOfAFolderIsAnError) {
    folder.write("one", "a file");
    EXPECT_FALSE(AtomicFile::makeFolders(files, folder.path() / "one/two"));
    EXPECT_EQ(folder.read("one"), "a file");
}

TEST_F(AtomicFileTest, ContentsAreReadWhole) {
    const std::string bytes("with a \0 in it, and more", 24);
    folder.write("file.json", bytes);
    files.limitReads(5);
    const auto contents = FileContents::read(files, file);
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->bytes(), bytes);
    for (std::size_t index = 0; index < FileContents::padding; ++index)
        EXPECT_EQ(contents->bytes().data()[bytes.size() + index], 0);
    EXPECT_EQ(FileContents::copy(bytes).bytes(), bytes);
}

TEST_F(AtomicFileTest, AnyOneCallOfReadingMayFail) {
    folder.write("file.json", "text");
    std::size_t number = 1;
    for (;; ++number) {
        files.heal();
        files.failCall(number);
        const auto contents = FileContents::read(files, file);
        EXPECT_EQ(files.openCount(), 0);
        EXPECT_NE(contents.has_value(), files.hasFailed());
        if (contents)
            break;
    }
    EXPECT_EQ(number, 6U);
}

TEST_F(AtomicFileTest, AFileLargerThanItSaysIsReadToItsEnd) {
    // Files of the process file system say that they are empty.
    const auto contents = FileContents::read(files, "/proc/self/status");
    ASSERT_TRUE(contents);
    EXPECT_GT(contents->bytes().size(), 500U);
    EXPECT_EQ(contents->bytes().back(), '\n');
}

TEST_F(AtomicFileTest, AFileThatGrowsWhileItIsReadIsReadToItsEnd) {
    const std::string bytes(10'000, 'x');
    folder.write("file.json", bytes);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, bytes.size() - 1}) {
        files.claimSize(size);
        const auto contents = FileContents::read(files, file);
        ASSERT_TRUE(contents) << size;
        EXPECT_EQ(contents->bytes(), bytes) << size;
    }
}

TEST_F(AtomicFileTest, FilesOfFourGibibytesAndMoreAreRefusedBeforeAnythingIsRead) {
    folder.write("file.json", "[]");
    std::filesystem::resize_file(file, FileContents::tooLarge);
    const auto contents = FileContents::read(files, file);
    ASSERT_FALSE(contents);
    EXPECT_EQ(contents.error().code, std::errc::file_too_large);
    EXPECT_EQ(contents.error().localizedDescription(), "File too large");
    EXPECT_EQ(std::ranges::count(files.calls(), "read"), 0);
    EXPECT_EQ(files.openCount(), 0);
}

TEST_F(AtomicFileTest, CreatingNeverReplaces) {
    ASSERT_TRUE(AtomicFile::create(files, file, "first"));
    const auto second = AtomicFile::create(files, file, "second");
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().code, std::errc::file_exists);
    EXPECT_EQ(folder.read("file.json"), "first");

    std::filesystem::create_symlink("nothing", folder.path() / "link");
    EXPECT_FALSE(AtomicFile::create(files, folder.path() / "link", "third"));
    EXPECT_EQ(names(), (std::vector<std::string>{"file.json", "link"}));
}

TEST_F(AtomicFileTest, OnlyRegularFilesAreRead) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_FALSE(FileContents::read(files, file));
    EXPECT_FALSE(FileContents::read(files, folder.path()));
    EXPECT_FALSE(FileContents::read(files, "/dev/zero"));
    EXPECT_EQ(files.openCount(), 0);
}

TEST_F(AtomicFileTest, AMoveNeverReplacesAFile) {
    folder.write("one", "1");
    folder.write("two", "2");
    const auto moved = files.move(folder.path() / "one", folder.path() / "two");
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error(), std::errc::file_exists);
    EXPECT_EQ(folder.read("one"), "1");
    EXPECT_EQ(folder.read("two"), "2");
    EXPECT_TRUE(files.move(folder.path() / "one", folder.path() / "three"));
    EXPECT_EQ(folder.read("three"), "1");
}

TEST_F(AtomicFileTest, WhatExistsIsToldFromWhatCannotBeKnown) {
    folder.write("one", "1");
    std::filesystem::create_symlink("nothing", folder.path() / "dangling");
    std::filesystem::create_symlink("circle", folder.path() / "circle");
    EXPECT_EQ(files.exists(folder.path() / "one"), true);
    EXPECT_EQ(files.exists(folder.path() / "two"), false);
    EXPECT_EQ(files.exists(folder.path() / "one/below"), false);
    EXPECT_EQ(files.exists(folder.path() / "dangling"), false);
    EXPECT_FALSE(files.exists(folder.path() / "circle").has_value());
}

} // namespace
} // namespace selvane
