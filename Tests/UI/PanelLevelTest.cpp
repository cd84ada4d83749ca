#include "Selvane/UI/PanelLevel.h"

#include <gtest/gtest.h>

#include <optional>

namespace selvane {
namespace {

struct Row {
    const char* name;
    std::optional<ProgramWindow> key;
    std::optional<ProgramWindow> closing;
    PanelLevel level;
};

class PanelLevelTable : public testing::TestWithParam<Row> {};

TEST_P(PanelLevelTable, OnlyTheMainWindowComesInFrontOfThePanel) {
    EXPECT_EQ(panelLevel(GetParam().key, GetParam().closing), GetParam().level);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PanelLevelTable,
    testing::Values(
        Row{"FloatsWhenNothingHasTheKeyboard", std::nullopt, std::nullopt, PanelLevel::floating},
        Row{"FloatsWithTheKeyboard", ProgramWindow::panel, std::nullopt, PanelLevel::floating},
        Row{"IsNormalWhenTheMainWindowHasTheKeyboard", ProgramWindow::main, std::nullopt, PanelLevel::normal},
        Row{"FloatsOverOtherWindows", ProgramWindow::other, std::nullopt, PanelLevel::floating},
        Row{"FloatsWhenTheMainWindowCloses", ProgramWindow::main, ProgramWindow::main, PanelLevel::floating},
        Row{"StaysNormalWhenAnotherWindowCloses", ProgramWindow::main, ProgramWindow::other,
            PanelLevel::normal},
        Row{"FloatsWhenAWindowClosesWhileNothingHasTheKeyboard", std::nullopt, ProgramWindow::main,
            PanelLevel::floating}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace selvane
