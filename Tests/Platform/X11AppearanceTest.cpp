#include "Selvane/Platform/Linux/DesktopAppearance.h"
#include "Selvane/Platform/Linux/X11Windows.h"

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

TEST(X11AppearanceTest, TheScreenIsCompositedWhileSomebodyOwnsThatSelection) {
    int screenNumber = 0;
    xcb_connection_t* const compositor = xcb_connect(nullptr, &screenNumber);
    ASSERT_EQ(xcb_connection_has_error(compositor), 0);
    const xcb_window_t root = X11Windows::screen(compositor, screenNumber)->root;
    const xcb_window_t window = xcb_generate_id(compositor);
    xcb_create_window(compositor, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t selection = X11Windows::atom(compositor, "_NET_WM_CM_S0");
    const auto own = [&](xcb_window_t owner) {
        xcb_set_selection_owner(compositor, owner, selection, XCB_CURRENT_TIME);
        // An answer means that the server has seen what came before the question.
        (void)X11Windows::atom(compositor, "_NET_WM_CM_S0");
    };

    const DesktopAppearance appearance(QDBusConnection(QStringLiteral("there is no such connection")));
    EXPECT_FALSE(appearance.isComposited());
    own(window);
    EXPECT_TRUE(appearance.isComposited());
    own(XCB_WINDOW_NONE);
    EXPECT_FALSE(appearance.isComposited());
    xcb_disconnect(compositor);
}

} // namespace
} // namespace selvane::test
