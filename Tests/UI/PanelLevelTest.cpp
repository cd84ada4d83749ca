#include "Selvane/UI/PanelLevel.h"

#include <gtest/gtest.h>

#include <optional>

namespace selvane {
namespace {

struct LevelRow {
    const char* name;
    std::optional<ProgramWindow> key;
    std::optional<ProgramWindow> closing;
    PanelLevel level;
};

class PanelLevelTable : public testing::TestWithParam<LevelRow> {};

TEST_P(PanelLevelTable, OnlyTheMainWindowComesInFrontOfThePanel) {
    EXPECT_EQ(panelLevel(GetParam().key, GetParam().closing), GetParam().level);
}

INSTANTIATE_TEST_SUITE_P(Rows, PanelLevelTable,
                         testing::Values(LevelRow{"FloatsWhenNothingHasTheKeyboard", std::nullopt,
                                                  std::nullopt, PanelLevel::floating},
                                         LevelRow{"FloatsWithTheKeyboard", ProgramWindow::panel, std::nullopt,
                                                  PanelLevel::floating},
                                         LevelRow{"IsNormalWhenTheMainWindowHasTheKeyboard",
                                                  ProgramWindow::main, std::nullopt, PanelLevel::normal},
                                         LevelRow{"FloatsOverOtherWindows", ProgramWindow::other,
                                                  std::nullopt, PanelLevel::floating},
                                         LevelRow{"FloatsWhenTheMainWindowCloses", ProgramWindow::main,
                                                  ProgramWindow::main, PanelLevel::floating},
                                         LevelRow{"StaysNormalWhenAnotherWindowCloses", ProgramWindow::main,
                                                  ProgramWindow::other, PanelLevel::normal},
                                         LevelRow{"FloatsWhenAWindowClosesWhileNothingHasTheKeyboard",
                                                  std::nullopt, ProgramWindow::main, PanelLevel::floating}),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace selvane
