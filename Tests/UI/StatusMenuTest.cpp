#include "Selvane/UI/StatusMenu.h"

#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace selvane {
namespace {

using testing::ElementsAre;

std::vector<std::string> labels(const std::vector<StatusMenuEntry>& entries) {
    std::vector<std::string> result;
    for (const auto& entry : entries)
        result.push_back(entry.isEnabled ? entry.label : "(" + entry.label + ")");
    return result;
}

TEST(StatusMenu, OffersWhatAppliesToTheTimer) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_THAT(labels(StatusMenu::entries(engine)),
                ElementsAre("Open Selvane", "", "Start", "(Reset)", "Skip", "", "Quit Selvane"));
    engine.start();
    EXPECT_THAT(labels(StatusMenu::entries(engine)),
                ElementsAre("Open Selvane", "", "Pause", "Reset", "Skip", "", "Quit Selvane"));
    engine.pause();
    EXPECT_THAT(labels(StatusMenu::entries(engine)),
                ElementsAre("Open Selvane", "", "Resume", "Reset", "Skip", "", "Quit Selvane"));
}

TEST(StatusMenu, LinesHaveIdentitiesOfTheirOwn) {
    test::ModelHarness harness;
    std::set<int> ids;
    const auto entries = StatusMenu::entries(harness.launch().engine());
    for (const auto& entry : entries) {
        EXPECT_GT(entry.id, 0);
        ids.insert(entry.id);
    }
    EXPECT_EQ(ids.size(), entries.size());
}

} // namespace
} // namespace selvane
