#include "Selvane/App/ReleaseNotes.h"

#include "Support/FaultyFileSystem.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace selvane {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class ReleaseNotesTest : public testing::Test {
protected:
    ReleaseNotes notes() {
        return {{.version = "1.2", .build = "12"}, files, folder.path() / "Changelog.json"};
    }

    test::TemporaryFolder folder;
    test::FaultyFileSystem files;
};

TEST_F(ReleaseNotesTest, TellTheRunningRelease) {
    EXPECT_EQ(notes().currentVersion(), "1.2");
    EXPECT_EQ(notes().currentBuild(), "12");
}

TEST_F(ReleaseNotesTest, AreReadAtTheFirstUseAndOnlyThen) {
    folder.write("Changelog.json",
                 R"([{"version":"1.1","date":"2026-02-01"},{"version":"1.2","date":"2026-03-01"}])");
    ReleaseNotes read = notes();
    EXPECT_THAT(files.calls(), IsEmpty());
    ASSERT_THAT(read.all(), SizeIs(2));
    EXPECT_EQ(read.all().front().version, "1.2");
    EXPECT_EQ(std::ranges::count(files.calls(), "openForReading"), 1);
}

TEST_F(ReleaseNotesTest, WhatIsMissingOrDamagedIsAnEmptyList) {
    EXPECT_THAT(notes().all(), IsEmpty());
    for (const char* const text : {"", "{", "{}", R"([{"version":"1.2"}])"}) {
        folder.write("Changelog.json", text);
        EXPECT_THAT(notes().all(), IsEmpty()) << text;
    }
    folder.write("Changelog.json", R"([{"version":"1.2","date":"2026-03-01"}])");
    files.failAlways("read");
    EXPECT_THAT(notes().all(), IsEmpty());
}

TEST_F(ReleaseNotesTest, TheNotesThatShipTellOfThisVersionFirst) {
    ReleaseNotes shipped({}, files, SELVANE_SHIPPED_CHANGELOG);
    ASSERT_THAT(shipped.all(), testing::Not(IsEmpty()));
    EXPECT_EQ(shipped.all().front().version, SELVANE_VERSION);
}

} // namespace
} // namespace selvane
