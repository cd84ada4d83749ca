#include "Stage.h"

#include "Selvane/App/AppSettings.h"
#include "Selvane/UI/Controls/HoverTip.h"
#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/Patience.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace selvane::test {

namespace {

QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
    if (item->text(QAccessible::Name) == name && item->actionInterface())
        return item;
    for (int index = 0; index < item->childCount(); ++index) {
        if (QAccessibleInterface* const found = find(item->child(index), name))
            return found;
    }
    return nullptr;
}

} // namespace

WithoutTips::WithoutTips() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool WithoutTips::eventFilter(QObject* watched, QEvent* event) {
    // A tip is shown when its timer tells that its delay is over.
    return event->type() == QEvent::Timer && qobject_cast<HoverTip*>(watched);
}

Stage::Stage() {
    harness.launch();
    appearance.setReducesMotion(true);
    appearance.setComposited(true);
}

Stage::~Stage() = default;

AppSettings& Stage::settings() {
    return model().settings();
}

TimerEngine& Stage::engine() {
    return model().engine();
}

void Stage::open() {
    _panel = std::make_unique<PopoverPanel>(PanelContext{&model(), &appearance, &harness.scheduler});
    ASSERT_TRUE(_panel->isReady());
    _window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
    ASSERT_NE(_window, nullptr);
    // What is clear shows what lies behind: a plain desktop.
    _window->setColor(appearance.isDark() ? QColor(0x40, 0x40, 0x40) : QColor(0xca, 0xca, 0xca));
    _panel->show({});
    ASSERT_TRUE(QTest::qWaitForWindowActive(_window, patience));
    // The page comes with the second frame.
    const auto isWhole = [this] {
        return find(QAccessible::queryAccessibleInterface(_window), QStringLiteral("Add a task…")) != nullptr;
    };
    ASSERT_TRUE(QTest::qWaitFor(isWhole, patience));
    // Drawing it makes the rows of its list.
    [[maybe_unused]] const QImage frame = _window->grabWindow();
}

void Stage::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(_window, key, modifiers);
}

void Stage::pressControl(const std::string& name) {
    QAccessibleInterface* const control =
        find(QAccessible::queryAccessibleInterface(_window), QString::fromStdString(name));
    ASSERT_NE(control, nullptr) << name;
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

QImage Stage::picture() {
    constexpr int enough = 3;
    int same = 0;
    QImage last = _window->grabWindow();
    const bool rested = QTest::qWaitFor(
        [&] {
            const QImage now = _window->grabWindow();
            same = now == last ? same + 1 : 0;
            last = now;
            return same == enough;
        },
        patience);
    EXPECT_TRUE(rested) << "the popover doesn't come to rest";
    return last;
}

} // namespace selvane::test
