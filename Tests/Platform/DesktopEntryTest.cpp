#include "Selvane/Platform/Linux/DesktopEntry.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace selvane::test {
namespace {

TEST(DesktopEntry, OfSeveralValuesTheLastCounts) {
    const DesktopEntry entry("[Desktop Entry]\nName=one\nName=two\n");
    EXPECT_EQ(entry.value("Name"), "two");
}

TEST(DesktopEntry, BlanksAroundKeysAndValuesAreNoPartOfThem) {
    const DesktopEntry entry(" [Desktop Entry] \n  Name \t=  one two \r\n");
    EXPECT_EQ(entry.value("Name"), "one two");
}

TEST(DesktopEntry, OnlyItsOwnGroupAndItsOwnKeysCount) {
    const DesktopEntry entry(
        "Name=before\n[Other]\nName=other\n[Desktop Entry]\n#Name=comment\nName[de]=German\n"
        "[Desktop Action x]\nName=action\n");
    EXPECT_TRUE(entry.isValid());
    EXPECT_EQ(entry.value("Name"), std::nullopt);
    EXPECT_EQ(entry.value("Name[de]"), "German");
}

TEST(DesktopEntry, WhatIsNoDesktopEntryHasNoValues) {
    for (const char* const text : {"", "Name=x\n", "[Other]\nName=x\n", "\n\n"}) {
        const DesktopEntry entry(text);
        EXPECT_FALSE(entry.isValid()) << text;
        EXPECT_EQ(entry.value("Name"), std::nullopt) << text;
    }
}

TEST(DesktopEntry, ATruthIsSaidInWordsOrDigits) {
    const DesktopEntry entry("[Desktop Entry]\na=true\nb=1\nc=false\nd=0\ne=yes\nf=TRUE\n");
    EXPECT_EQ(entry.truth("a"), true);
    EXPECT_EQ(entry.truth("b"), true);
    EXPECT_EQ(entry.truth("c"), false);
    EXPECT_EQ(entry.truth("d"), false);
    for (const char* const key : {"e", "f", "absent"})
        EXPECT_EQ(entry.truth(key), std::nullopt) << key;
}

TEST(DesktopEntry, AValueIsReadBackAsItWasSet) {
    for (const char* const value : {"plain", " blanks ", "back\\slash", "\\n", "two\nlines", "tab\t", "\r",
                                    "a=b", "", " ", "caf\xc3\xa9", "#"}) {
        DesktopEntry entry;
        entry.set("Key", value);
        EXPECT_EQ(DesktopEntry(entry.text()).value("Key"), value);
    }
}

TEST(DesktopEntry, AnUnknownEscapeStaysAsItIs) {
    const DesktopEntry entry("[Desktop Entry]\nKey=a\\;b\\\n");
    EXPECT_EQ(entry.value("Key"), "a\\;b\\");
}

TEST(DesktopEntry, AChangeTouchesOneLineAlone) {
    DesktopEntry entry("# mine\n\n[Desktop Entry]\nName = one\nX-Mine=\\u\n\n[Desktop Action a]\nName=two\n");
    entry.set("Name", "new");
    entry.set("Hidden", "true");
    EXPECT_EQ(entry.text(), "# mine\n\n[Desktop Entry]\nName=new\nX-Mine=\\u\nHidden=true\n\n"
                            "[Desktop Action a]\nName=two\n");
    entry.remove("Hidden");
    entry.remove("Absent");
    EXPECT_EQ(entry.text(),
              "# mine\n\n[Desktop Entry]\nName=new\nX-Mine=\\u\n\n[Desktop Action a]\nName=two\n");
}

TEST(DesktopEntry, ARemovedKeyIsGoneHoweverOftenItWasThere) {
    DesktopEntry entry("[Desktop Entry]\nHidden=true\nName=x\nHidden=true\n");
    entry.remove("Hidden");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\nName=x\n");
}

TEST(DesktopEntry, WhatWasNoneBecomesOneWithItsFirstKey) {
    DesktopEntry entry("# mine");
    entry.remove("Name");
    entry.set("Name", "x");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\n# mine\nName=x\n");
}

struct Word {
    const char* name;
    const char* path;
    const char* word;
};

void PrintTo(const Word& word, std::ostream* stream) {
    *stream << word.name;
}

class DesktopEntryWords : public testing::TestWithParam<Word> {};

TEST_P(DesktopEntryWords, AreQuotedWhereTheyMustBe) {
    EXPECT_EQ(DesktopEntry::executable(GetParam().path), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(
    All, DesktopEntryWords,
    testing::Values(Word{"Plain", "/usr/bin/selvane", "/usr/bin/selvane"},
                    Word{"Blank", "/my programs/x", "\"/my programs/x\""},
                    Word{"Percent", "/100%/x", "/100%%/x"}, Word{"Dollar", "/$HOME", "\"/\\$HOME\""},
                    Word{"Quote", "/a\"b", "\"/a\\\"b\""}, Word{"Backquote", "/a`b", "\"/a\\`b\""},
                    Word{"Backslash", "/a\\b", "\"/a\\\\b\""}, Word{"Apostrophe", "/a'b", "\"/a'b\""},
                    Word{"Parenthesis", "/a(1)", "\"/a(1)\""}, Word{"Tilde", "/a~b", "\"/a~b\""}),
    [](const auto& test) { return test.param.name; });

struct Command {
    const char* name;
    const char* exec;
    std::vector<std::string> words;
};

void PrintTo(const Command& command, std::ostream* stream) {
    *stream << command.name;
}

class DesktopEntryCommands : public testing::TestWithParam<Command> {};

TEST_P(DesktopEntryCommands, AreTakenApartWithoutFiles) {
    const DesktopEntry entry(std::string("[Desktop Entry]\nExec=") + GetParam().exec + "\n");
    EXPECT_EQ(entry.command(), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    All, DesktopEntryCommands,
    testing::Values(
        Command{"OneWord", "player", {"player"}}, Command{"Blanks", " a  b ", {"a", "b"}},
        Command{"FieldCodes", "player --new %U %f", {"player", "--new"}},
        Command{"FieldCodeInAWord", "player --file=%f", {"player", "--file="}},
        Command{"Percent", "player 100%%", {"player", "100%"}},
        Command{"PercentAtTheEnd", "player %", {"player", "%"}},
        Command{"Quotes", "\"/my programs/x\" \"a \\\\\"b\\\\\" \\\\$c\"", {"/my programs/x", "a \"b\" $c"}},
        Command{"EmptyQuotes", "player \"\"", {"player", ""}},
        Command{"Flatpak",
                "/usr/bin/flatpak run --command=x org.example.X @@u %U @@",
                {"/usr/bin/flatpak", "run", "--command=x", "org.example.X", "@@u", "@@"}},
        Command{"QuoteWithoutEnd", "player \"a b", {}}, Command{"Empty", "", {}},
        Command{"OnlyAFieldCode", "%u", {}}),
    [](const auto& test) { return test.param.name; });

TEST(DesktopEntry, WithoutExecThereIsNoCommand) {
    EXPECT_TRUE(DesktopEntry("[Desktop Entry]\nName=x\n").command().empty());
}

} // namespace
} // namespace selvane::test
