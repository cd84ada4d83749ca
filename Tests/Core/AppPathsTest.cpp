#include "SelvaneCore/AppPaths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace selvane {
namespace {

/// Sets one variable of the environment, or takes it away, and puts the old value back at the end.
class Variable {
public:
    Variable(const char* name, std::optional<std::string> value) : _name(name) {
        if (const char* const old = std::getenv(name))
            _old = old;
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(_old); }

    void set(const std::optional<std::string>& value) const {
        if (value)
            ::setenv(_name, value->c_str(), 1);
        else
            ::unsetenv(_name);
    }

private:
    const char* _name;
    std::optional<std::string> _old;
};

TEST(AppPaths, DataLiesInTheDataHome) {
    const Variable data("XDG_DATA_HOME", "/somewhere/data");
    const Variable home("HOME", "/somewhere/home");
    EXPECT_EQ(AppPaths::dataDirectory(), "/somewhere/data/Selvane");
    EXPECT_EQ(AppPaths::file("tasks.json"), "/somewhere/data/Selvane/tasks.json");
}

TEST(AppPaths, WithoutDataHomeItLiesInTheHomeFolder) {
    const Variable data("XDG_DATA_HOME", std::nullopt);
    const Variable home("HOME", "/somewhere/home");
    const std::optional<std::string> unset;
    for (const auto& useless :
         {unset, std::optional<std::string>(""), std::optional<std::string>("relative")}) {
        data.set(useless);
        EXPECT_EQ(AppPaths::dataDirectory(), "/somewhere/home/.local/share/Selvane");
    }
}

TEST(AppPaths, WithoutAHomeVariableTheAccountTellsIt) {
    const Variable data("XDG_DATA_HOME", std::nullopt);
    const Variable home("HOME", std::nullopt);
    const auto path = AppPaths::dataDirectory();
    EXPECT_TRUE(path.is_absolute());
    EXPECT_TRUE(path.string().ends_with("/.local/share/Selvane"));
    home.set("relative/home");
    EXPECT_EQ(AppPaths::dataDirectory(), path);
}

TEST(AppPaths, SettingsLieInTheConfigHomeUnderTheirDomain) {
    const Variable config("XDG_CONFIG_HOME", "/somewhere/config");
    const Variable home("HOME", "/somewhere/home");
    EXPECT_EQ(AppPaths::defaultsFile("com.example.timer"), "/somewhere/config/com.example.timer.json");
    for (const char* const useless : {"", "relative"}) {
        config.set(useless);
        EXPECT_EQ(AppPaths::defaultsFile("com.example.timer"),
                  "/somewhere/home/.config/com.example.timer.json");
    }
    config.set(std::nullopt);
    EXPECT_EQ(AppPaths::defaultsFile("com.example.timer"), "/somewhere/home/.config/com.example.timer.json");
}

TEST(AppPaths, SettingsOfTheSystemLieInTheAbsoluteFoldersOfTheirVariableInOrder) {
    using Paths = std::vector<std::filesystem::path>;
    const Variable folders("XDG_CONFIG_DIRS", "/one:relative::/two:");
    EXPECT_EQ(AppPaths::systemSettingsDirectories(), (Paths{"/one", "/two"}));
    folders.set("/three");
    EXPECT_EQ(AppPaths::systemSettingsDirectories(), Paths{"/three"});
    for (const auto& unset : {std::optional<std::string>(), std::optional<std::string>("")}) {
        folders.set(unset);
        EXPECT_EQ(AppPaths::systemSettingsDirectories(), Paths{"/etc/xdg"});
    }
}

TEST(AppPaths, NothingIsCached) {
    const Variable data("XDG_DATA_HOME", "/one");
    EXPECT_EQ(AppPaths::dataDirectory(), "/one/Selvane");
    data.set("/two");
    EXPECT_EQ(AppPaths::dataDirectory(), "/two/Selvane");
}

} // namespace
} // namespace selvane
