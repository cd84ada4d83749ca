#include "Selvane/UI/QtProgramWindows.h"

#include <QCloseEvent>
#include <QTest>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;

/// Asks the user first, or only hides itself.
class RefusingWindow final : public QWindow {
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

class QtProgramWindowsTest : public testing::Test {
protected:
    template <typename Window = QWindow>
    static std::unique_ptr<Window> show(Qt::WindowType type) {
        auto window = std::make_unique<Window>();
        window->setFlags(type);
        window->show();
        window->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return window;
    }

    QtProgramWindows windows;
};

TEST_F(QtProgramWindowsTest, TellsThePanelTheMainWindowAndOthersApart) {
    EXPECT_EQ(windows.key(), std::nullopt);
    int changes = 0;
    const auto subscription = windows.keyChanged.subscribe([&] { ++changes; });
    const auto panel = show(Qt::Tool);
    EXPECT_EQ(windows.key(), ProgramWindow::panel);
    EXPECT_EQ(changes, 1);
    const auto main = show(Qt::Window);
    EXPECT_EQ(windows.key(), ProgramWindow::main);
    const auto dialog = show(Qt::Dialog);
    EXPECT_EQ(windows.key(), ProgramWindow::other);
}

TEST_F(QtProgramWindowsTest, TellsThatAWindowClosesBeforeItLosesTheKeyboard) {
    const auto main = show(Qt::Window);
    std::vector<ProgramWindow> closing;
    std::optional<ProgramWindow> keyThen;
    const auto subscription = windows.willClose.subscribe([&](ProgramWindow window) {
        closing.push_back(window);
        keyThen = windows.key();
    });
    main->close();
    EXPECT_THAT(closing, ElementsAre(ProgramWindow::main));
    EXPECT_EQ(keyThen, ProgramWindow::main);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !windows.key(); }));
}

TEST_F(QtProgramWindowsTest, WindowThatRefusesToCloseIsNotToldAsClosing) {
    const auto main = show<RefusingWindow>(Qt::Window);
    std::vector<ProgramWindow> closing;
    const auto subscription =
        windows.willClose.subscribe([&](ProgramWindow window) { closing.push_back(window); });
    EXPECT_FALSE(main->close());
    EXPECT_THAT(closing, ElementsAre());
    ASSERT_TRUE(main->isVisible());
    main->hide();
    EXPECT_THAT(closing, ElementsAre(ProgramWindow::main)) << "hidden, it is as good as closed";
}

TEST_F(QtProgramWindowsTest, WindowThatHadTheKeyboardTwiceClosesOnce) {
    const auto main = show(Qt::Window);
    const auto panel = show(Qt::Tool);
    main->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    int closings = 0;
    const auto subscription = windows.willClose.subscribe([&](ProgramWindow) { ++closings; });
    main->close();
    EXPECT_EQ(closings, 1);
}

} // namespace
} // namespace selvane
