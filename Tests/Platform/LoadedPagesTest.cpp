#include "Selvane/Platform/Linux/LoadedPages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace selvane {
namespace {

using LoadedPages::Range;
using testing::ElementsAre;
using testing::IsEmpty;

std::string mapping(const std::string& head, const std::string& anonymous = "0 kB",
                    const std::string& swapped = "0 kB") {
    return head +
           "\nSize:  1648 kB\nKernelPageSize:    4 kB\nRss:  1024 kB\nPrivate_Dirty:   0 kB\nAnonymous:      "
           "   " +
           anonymous + "\nAnonHugePages:         0 kB\nSwap:                  " + swapped +
           "\nLocked:        0 kB\nVmFlags: rd ex mr mw me\n";
}

std::vector<Range> unchanged(const std::string& smaps) {
    std::istringstream text(smaps);
    return LoadedPages::unchanged(text);
}

const std::string code =
    "7f0000001000-7f0000003000 r-xp 00002000 fe:00 1234                     /usr/lib/libm.so.6";

TEST(LoadedPages, CodeOfFilesIsUnchanged) {
    EXPECT_THAT(
        unchanged(mapping(code) +
                  mapping("7f0000003000-7f0000004000 r-xp 00000000 fe:00 77    /opt/a program/lib.so")),
        ElementsAre(Range{0x7f0000001000, 0x7f0000003000}, Range{0x7f0000003000, 0x7f0000004000}));
}

TEST(LoadedPages, WhatLibrariesHaveBesideTheirCodeStays) {
    EXPECT_THAT(unchanged(mapping("7f0000001000-7f0000003000 r--p 00002000 fe:00 1234   /usr/lib/libm.so.6")),
                IsEmpty());
}

TEST(LoadedPages, PageThatWasChangedKeepsItsMapping) {
    EXPECT_THAT(unchanged(mapping(code, "4 kB")), IsEmpty());
    EXPECT_THAT(unchanged(mapping(code, "40 kB")), IsEmpty());
    EXPECT_THAT(unchanged(mapping(code, "0 kB", "4 kB")), IsEmpty()) << "also where it is swapped out";
}

TEST(LoadedPages, MemoryThatIsNoPrivateFileIsLeft) {
    for (const char* const head : {"7f0000001000-7f0000003000 rw-p 00002000 fe:00 1234   /usr/lib/libm.so.6",
                                   "7f0000001000-7f0000003000 r--s 00002000 00:01 1234   /memfd:sound",
                                   "7f0000001000-7f0000003000 ---p 00002000 fe:00 1234   /usr/lib/libm.so.6",
                                   "7f0000001000-7f0000003000 r-xp 00000000 00:00 0      [vdso]",
                                   "7f0000001000-7f0000003000 r--p 00000000 00:00 0"})
        EXPECT_THAT(unchanged(mapping(head)), IsEmpty()) << head;
}

TEST(LoadedPages, TextThatSaysNothingForSureGivesNothing) {
    EXPECT_THAT(unchanged(""), IsEmpty());
    EXPECT_THAT(unchanged(code), IsEmpty()) << "nothing about changes";
    EXPECT_THAT(unchanged(code + "\nAnonymous:"), IsEmpty());
    EXPECT_THAT(unchanged(code + "\nAnonymous:    0 kB\n"), IsEmpty()) << "nothing about the swap";
    EXPECT_THAT(unchanged(code + "\nSwap:    0 kB\n"), IsEmpty());
    EXPECT_THAT(unchanged(mapping("zz-7f0000003000 r-xp 0 fe:00 1 /usr/lib/libm.so.6")), IsEmpty());
    EXPECT_THAT(unchanged(mapping("7f00-7e00 r-xp 0 fe:00 1 /usr/lib/libm.so.6")), IsEmpty());
}

/// Pages of a file in this process's memory, as if they were code.
class MappedFile {
public:
    static constexpr std::size_t size = 1024 * 1024;

    MappedFile() : _file(memfd_create("code", MFD_CLOEXEC)) {
        const std::string text(size, 'a');
        EXPECT_EQ(write(_file, text.data(), size), static_cast<ssize_t>(size));
        _memory = static_cast<char*>(mmap(nullptr, size, PROT_READ | PROT_EXEC, MAP_PRIVATE, _file, 0));
        EXPECT_NE(_memory, MAP_FAILED);
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile() {
        munmap(_memory, size);
        close(_file);
    }

    [[nodiscard]] char* memory() const { return _memory; }

    /// Reads all of it: how many of its bytes are the file's.
    [[nodiscard]] std::ptrdiff_t read() const { return std::count(_memory, _memory + size, 'a'); }

    /// What the kernel says is in memory.
    [[nodiscard]] int residentKilobytes() const {
        std::ostringstream begin;
        begin << std::hex << reinterpret_cast<std::uintptr_t>(_memory) << '-';
        std::ifstream smaps("/proc/self/smaps");
        bool isHere = false;
        for (std::string line; std::getline(smaps, line);) {
            if (line.starts_with(begin.str()))
                isHere = true;
            else if (isHere && line.starts_with("Rss:"))
                return std::stoi(line.substr(4));
        }
        return -1;
    }

private:
    int _file;
    char* _memory = nullptr;
};

TEST(LoadedPages, PagesGoAndComeBackAsTheyWere) {
    const MappedFile file;
    ASSERT_EQ(file.read(), static_cast<std::ptrdiff_t>(MappedFile::size));
    ASSERT_EQ(file.residentKilobytes(), 1024);
    LoadedPages::giveBack();
    EXPECT_EQ(file.residentKilobytes(), 0);
    EXPECT_EQ(file.read(), static_cast<std::ptrdiff_t>(MappedFile::size));
}

TEST(LoadedPages, ChangeThatIsInNoFileStays) {
    const MappedFile file;
    ASSERT_EQ(mprotect(file.memory(), MappedFile::size, PROT_READ | PROT_WRITE), 0);
    file.memory()[5 * 65536] = 'b';
    ASSERT_EQ(mprotect(file.memory(), MappedFile::size, PROT_READ | PROT_EXEC), 0);
    LoadedPages::giveBack();
    EXPECT_EQ(file.memory()[5 * 65536], 'b');
}

} // namespace
} // namespace selvane
