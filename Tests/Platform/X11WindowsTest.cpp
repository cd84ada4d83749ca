#include "Selvane/Platform/Linux/X11Windows.h"

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

TEST(X11Windows, AProgramThatMakesNoWindowsHasNoConnection) {
    EXPECT_EQ(X11Windows::connection(), nullptr);
}

} // namespace
} // namespace selvane::test
