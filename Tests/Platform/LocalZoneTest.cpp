#include "Selvane/Platform/Linux/LocalZone.h"

#include "Support/LocalTime.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

namespace selvane::test {
namespace {

class LocalZoneTest : public testing::Test {
protected:
    LocalZoneTest() {
        if (const char* zone = std::getenv("TZ"))
            _before = zone;
        ::unsetenv("TZ");
    }
    ~LocalZoneTest() override {
        if (_before)
            ::setenv("TZ", _before->c_str(), 1);
        else
            ::unsetenv("TZ");
    }

    /// As tools that set the zone do it: the new link takes the place of the old one at once.
    void pointTo(const std::string& target) {
        std::filesystem::create_symlink(target, _folder.path() / "next");
        std::filesystem::rename(_folder.path() / "next", _link);
    }

    static Calendar fallback() { return Calendar(absl::LocalTimeZone()); }

    TemporaryFolder _folder;
    std::string _link = _folder.path() / "localtime";
    LocalZone _zone{_link};

private:
    std::optional<std::string> _before;
};

TEST_F(LocalZoneTest, AChangeOfTheLinkIsNoticedAtOnce) {
    pointTo("/usr/share/zoneinfo/Europe/Berlin");
    EXPECT_EQ(_zone.current(), zone("Europe/Berlin"));
    EXPECT_EQ(_zone.current(), zone("Europe/Berlin"));
    pointTo("../usr/share/zoneinfo/Asia/Tokyo");
    EXPECT_EQ(_zone.current(), zone("Asia/Tokyo"));
    pointTo("/usr/share/zoneinfo/Europe/Berlin");
    EXPECT_EQ(_zone.current(), zone("Europe/Berlin"));
}

struct Target {
    const char* name;
    const char* target;
};

void PrintTo(const Target& target, std::ostream* stream) {
    *stream << target.name;
}

class LocalZoneWithoutName : public LocalZoneTest, public testing::WithParamInterface<Target> {};

TEST_P(LocalZoneWithoutName, TheFirstFoundZoneStands) {
    pointTo("/usr/share/zoneinfo/Asia/Tokyo");
    ASSERT_EQ(_zone.current(), zone("Asia/Tokyo"));
    pointTo(GetParam().target);
    EXPECT_EQ(_zone.current(), fallback());
    pointTo("/usr/share/zoneinfo/Asia/Tokyo");
    EXPECT_EQ(_zone.current(), zone("Asia/Tokyo"));
}

INSTANTIATE_TEST_SUITE_P(All, LocalZoneWithoutName,
                         testing::Values(Target{"UnknownZone", "/usr/share/zoneinfo/Europe/Atlantis"},
                                         Target{"NoZone", "/usr/share/zoneinfo/"},
                                         Target{"OutsideOfTheFolder", "/srv/Asia/Tokyo"},
                                         Target{"Nothing", "zoneinfo"}),
                         [](const auto& test) { return test.param.name; });

TEST_F(LocalZoneTest, AFileThatIsNoLinkNamesNoZone) {
    EXPECT_EQ(_zone.current(), fallback()) << "there is no file at all";
    pointTo("/usr/share/zoneinfo/Asia/Tokyo");
    ASSERT_EQ(_zone.current(), zone("Asia/Tokyo"));
    std::filesystem::remove(_link);
    std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Tokyo", _link);
    EXPECT_EQ(_zone.current(), fallback());
}

struct Variable {
    const char* name;
    std::string value;
    std::optional<std::string> zone;
};

void PrintTo(const Variable& variable, std::ostream* stream) {
    *stream << variable.name;
}

class LocalZoneVariable : public LocalZoneTest, public testing::WithParamInterface<Variable> {};

TEST_P(LocalZoneVariable, DecidesUnlessItNamesTheLink) {
    pointTo("/usr/share/zoneinfo/Asia/Tokyo");
    ::setenv("TZ", GetParam().value.c_str(), 1);
    EXPECT_EQ(_zone.current().zone().name(), GetParam().zone.value_or("Asia/Tokyo"));
    ::unsetenv("TZ");
    EXPECT_EQ(_zone.current(), zone("Asia/Tokyo"));
}

INSTANTIATE_TEST_SUITE_P(All, LocalZoneVariable,
                         testing::Values(Variable{"Name", "Europe/Berlin", "Europe/Berlin"},
                                         Variable{"NameAfterColon", ":Europe/Berlin", "Europe/Berlin"},
                                         Variable{"Empty", "", "UTC"},
                                         Variable{"Local", "localtime", std::nullopt},
                                         Variable{"LocalAfterColon", ":localtime", std::nullopt}),
                         [](const auto& test) { return test.param.name; });

TEST_F(LocalZoneTest, AVariableThatNamesTheLinkLeavesTheDecisionToIt) {
    ::setenv("TZ", (":" + _link).c_str(), 1);
    pointTo("/usr/share/zoneinfo/Europe/Berlin");
    EXPECT_EQ(_zone.current(), zone("Europe/Berlin"));
    pointTo("/usr/share/zoneinfo/Asia/Tokyo");
    EXPECT_EQ(_zone.current(), zone("Asia/Tokyo"));
}

} // namespace
} // namespace selvane::test
