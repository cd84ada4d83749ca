#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace selvane {
namespace {

/// Draws the popover in its states into the folder that SELVANE_GALLERY names, to be looked at.
TEST(PopoverGallery, DrawsEveryState) {
    const QString folder = qEnvironmentVariable("SELVANE_GALLERY");
    if (folder.isEmpty())
        GTEST_SKIP() << "SELVANE_GALLERY names no folder";
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));

    struct Scene {
        const char* name;
        std::function<void(test::ModelHarness&, QQuickView&)> set;
        /// Tab 0 or 1.
        int tab = 0;
    };
    const auto run = [](test::ModelHarness& harness) {
        harness.model().engine().start();
        harness.pass(Seconds{630});
    };
    const auto tasks = [](test::ModelHarness& harness) {
        for (const char* const title : {"Write the quarterly report", "Reply about the venue",
                                        "Sketch the onboarding flow", "Book the train"})
            harness.model().addTask(title);
        harness.model().toggleTask(harness.model().tasks().items.at(3).id);
        harness.model().setEstimate(harness.model().tasks().items.at(0).id, 4);
        harness.model().setCurrentTaskID(harness.model().tasks().items.at(0).id);
    };
    const Scene scenes[] = {
        {"idle", [](auto&, auto&) {}},
        {"running",
         [&](auto& harness, auto&) {
             tasks(harness);
             run(harness);
             harness.answers.nextEvent =
                 CalendarEvent{"Design review", harness.now + std::chrono::minutes{9}};
             harness.answers.isMusicPlaying = true;
             harness.model().music().changed.emit();
             harness.model().calendar().changed.emit();
         }},
        {"paused",
         [&](auto& harness, auto&) {
             tasks(harness);
             run(harness);
             harness.model().engine().pause();
         }},
        {"break",
         [&](auto& harness, auto&) {
             harness.model().engine().skip();
             harness.model().engine().start();
             harness.pass(Seconds{100});
             harness.answers.lastUsage = {{"org.example.editor", "Editor", Seconds{1200}}};
             harness.model().focusGuard().changed.emit();
         }},
        {"bar",
         [&](auto& harness, auto&) {
             harness.model().settings().timerStyle.set(TimerStyle::bar);
             run(harness);
         }},
        {"minimal",
         [&](auto& harness, auto&) { harness.model().settings().timerStyle.set(TimerStyle::minimal); }},
        {"drift",
         [&](auto& harness, auto&) {
             run(harness);
             harness.answers.driftAppName = "A browser with quite a long name for an application";
             harness.model().focusGuard().changed.emit();
             harness.model().settings().musicSource.set(MusicSource::spotify);
         }},
        {"progress",
         [&](auto& harness, auto&) {
             harness.answers.updateAvailable = true;
             harness.model().updater().changed.emit();
             harness.model().settings().musicSource.set(MusicSource::none);
         },
         1},
    };

    const qreal scale = qGuiApp->devicePixelRatio();
    for (const char* const look : {"light", "dark", "contrast"}) {
        for (const Scene& scene : scenes) {
            test::ModelHarness harness;
            test::FakeAppearance appearance;
            appearance.setComposited(true);
            appearance.setReducesMotion(true);
            appearance.setDark(look == std::string("dark"));
            appearance.setHighContrast(look == std::string("contrast"));
            PopoverPanel panel({&harness.launch(), &appearance, &harness.scheduler});
            auto* const window = qobject_cast<QQuickView*>(QGuiApplication::topLevelWindows().constLast());
            // The desktop behind it.
            window->setColor(appearance.isDark() ? QColor(44, 43, 48) : QColor(220, 221, 225));
            panel.show({});
            ASSERT_TRUE(QTest::qWaitForWindowActive(window));
            scene.set(harness, *window);
            if (scene.tab == 1)
                QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
            for (int turn = 0; turn < 20; ++turn)
                QTest::qWait(10);
            const QImage picture = window->grabWindow();
            QDir().mkpath(folder);
            picture.save(QStringLiteral("%1/%2-%3@%4.png")
                             .arg(folder, QString::fromLatin1(scene.name), QString::fromLatin1(look))
                             .arg(scale));
        }
    }
}

} // namespace
} // namespace selvane
