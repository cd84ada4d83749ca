#include "SelvaneCore/Log.h"

#include "Support/FakeJournal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <string>

namespace selvane::test {
namespace {

class Log : public testing::Test {
protected:
    void TearDown() override {
        selvane::Log::toStandardError();
        ::unsetenv("JOURNAL_STREAM");
    }

    static std::string standardErrorOf(const char* message) {
        testing::internal::CaptureStderr();
        selvane::Log::line(message);
        return testing::internal::GetCapturedStderr();
    }

    const FakeJournal journal;
};

TEST_F(Log, ALineGoesToStandardErrorAsLongAsNobodyAskedForTheJournal) {
    EXPECT_EQ(standardErrorOf("a disk is full"), "Selvane: a disk is full\n");
}

TEST_F(Log, ALineStaysOneLine) {
    EXPECT_EQ(standardErrorOf("a\nb\tc\x7f"
                              "d\x1b[31m"),
              "Selvane: a b c d [31m\n");
    EXPECT_EQ(standardErrorOf("caf\xc3\xa9"), "Selvane: caf\xc3\xa9\n");
}

TEST_F(Log, TheJournalGetsThePlainLineAndWhoWroteIt) {
    ASSERT_TRUE(journal.isThere);
    selvane::Log::toJournal(journal.path());
    EXPECT_EQ(standardErrorOf("a disk\nis full"), "");
    EXPECT_EQ(journal.receive(), "PRIORITY=4\nSYSLOG_IDENTIFIER=selvane\nMESSAGE=Selvane: a disk is full\n");
    EXPECT_EQ(journal.receive(), std::nullopt);
}

TEST_F(Log, WithoutAJournalALineGoesToStandardError) {
    selvane::Log::toJournal("/there/is/no/such/socket");
    EXPECT_EQ(standardErrorOf("one"), "Selvane: one\n");
    const std::string tooLong(200, 'x');
    selvane::Log::toJournal(tooLong.c_str());
    EXPECT_EQ(standardErrorOf("two"), "Selvane: two\n");
}

TEST_F(Log, WhatTheJournalDoesNotTakeGoesToStandardError) {
    ASSERT_TRUE(journal.isThere);
    selvane::Log::toJournal(journal.path());
    const std::string huge(std::size_t{1} << 20, 'x');
    EXPECT_EQ(standardErrorOf(huge.c_str()), "Selvane: " + huge + "\n");
    EXPECT_EQ(journal.receive(), std::nullopt);
}

TEST_F(Log, AJournalThatDoesNotReadIsNotWaitedFor) {
    ASSERT_TRUE(journal.isThere);
    selvane::Log::toJournal(journal.path());
    // A socket's queue holds fewer than so many.
    std::string written;
    for (int count = 0; count < 10000 && written.empty(); ++count)
        written = standardErrorOf("again");
    EXPECT_EQ(written, "Selvane: again\n");
}

TEST_F(Log, StandardErrorThatLeadsToTheJournalStaysTheWay) {
    ASSERT_TRUE(journal.isThere);
    testing::internal::CaptureStderr();
    struct stat status {};
    ASSERT_EQ(::fstat(STDERR_FILENO, &status), 0);
    const std::string stream = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    ::setenv("JOURNAL_STREAM", stream.c_str(), 1);
    selvane::Log::toJournal(journal.path());
    selvane::Log::line("one");
    // A shell redirected the stream, of which the variable knows nothing.
    ::setenv("JOURNAL_STREAM", (stream + "0").c_str(), 1);
    selvane::Log::toJournal(journal.path());
    selvane::Log::line("two");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Selvane: one\n");
    EXPECT_THAT(journal.receive().value_or(""), testing::HasSubstr("MESSAGE=Selvane: two\n"));
    EXPECT_EQ(journal.receive(), std::nullopt);
}

// Any thread may write a line, and the environment is not for any thread to read.
TEST_F(Log, ALineDoesNotReadTheEnvironment) {
    ASSERT_TRUE(journal.isThere);
    selvane::Log::toJournal(journal.path());
    testing::internal::CaptureStderr();
    struct stat status {};
    ASSERT_EQ(::fstat(STDERR_FILENO, &status), 0);
    const std::string stream = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    ::setenv("JOURNAL_STREAM", stream.c_str(), 1);
    selvane::Log::line("one");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(journal.receive().value_or(""), testing::HasSubstr("MESSAGE=Selvane: one\n"));
}

TEST_F(Log, APersonAtATerminalSeesWhatTheJournalGets) {
    ASSERT_TRUE(journal.isThere);
    selvane::Log::toJournal(journal.path());
    int terminal = -1;
    int screen = -1;
    ASSERT_EQ(::openpty(&screen, &terminal, nullptr, nullptr, nullptr), 0);
    const int kept = ::dup(STDERR_FILENO);
    ::dup2(terminal, STDERR_FILENO);
    selvane::Log::line("hello");
    ::dup2(kept, STDERR_FILENO);
    ::close(kept);

    pollfd shows{.fd = screen, .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&shows, 1, 10000), 1);
    std::array<char, 100> shown{};
    const ssize_t count = ::read(screen, shown.data(), shown.size());
    ::close(screen);
    ::close(terminal);
    ASSERT_GT(count, 0);
    EXPECT_EQ(std::string(shown.data(), static_cast<std::size_t>(count)), "Selvane: hello\r\n");
    EXPECT_THAT(journal.receive().value_or(""), testing::HasSubstr("MESSAGE=Selvane: hello\n"));
}

} // namespace
} // namespace selvane::test
