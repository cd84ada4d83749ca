#include "FaceWindow.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace selvane {
namespace {

/// Pictures of every look of the timer face, for whoever designs it:
///
///     SELVANE_GALLERY=/tmp/pictures ui-tests --gtest_filter='TimerFaceGallery.*'
///
/// QT_SCALE_FACTOR=2 draws them for a fine screen.
class TimerFaceGallery : public testing::Test {
protected:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("SELVANE_GALLERY"))
            GTEST_SKIP() << "SELVANE_GALLERY names no folder.";
        QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    }

    using Arrange = std::function<void(test::FaceWindow&)>;

    static void draw(
        const QString& name, const Arrange& arrange, const QByteArray& content = {},
        const Arrange& act = [](test::FaceWindow&) {}) {
        for (const bool dark : {false, true}) {
            for (const bool highContrast : {false, true}) {
                test::FaceWindow face;
                face.appearance.setDark(dark);
                face.appearance.setHighContrast(highContrast);
                arrange(face);
                if (content.isEmpty())
                    face.open();
                else
                    face.open(content);
                act(face);
                const QString file = QStringLiteral("%1-%2%3.png")
                                         .arg(name, dark ? QStringLiteral("dark") : QStringLiteral("light"),
                                              highContrast ? QStringLiteral("-contrast") : QString());
                const QDir folder(qEnvironmentVariable("SELVANE_GALLERY"));
                EXPECT_TRUE(face.window().grabWindow().save(folder.filePath(file))) << file.toStdString();
            }
        }
    }
};

void run(test::FaceWindow& face, double share) {
    face.engine().start();
    face.harness.now = adding(face.engine().currentDuration() * share, face.harness.now);
    face.engine().tick();
}

TEST_F(TimerFaceGallery, EveryStyleInEveryState) {
    for (const TimerStyle style : allCases<TimerStyle>) {
        const auto look = [&](const char* state, const std::function<void(test::FaceWindow&)>& arrange) {
            draw(QStringLiteral("%1-%2").arg(QString::fromUtf8(rawValue(style)), QString::fromUtf8(state)),
                 [&](test::FaceWindow& face) {
                     face.settings().timerStyle.set(style);
                     arrange(face);
                 });
        };
        look("idle", [](test::FaceWindow&) {});
        look("0", [](test::FaceWindow& face) { run(face, 0); });
        look("2", [](test::FaceWindow& face) { run(face, 0.02); });
        look("42", [](test::FaceWindow& face) { run(face, 0.42); });
        look("97", [](test::FaceWindow& face) { run(face, 0.97); });
        look("99", [](test::FaceWindow& face) { run(face, 0.993); });
        look("paused", [](test::FaceWindow& face) {
            run(face, 0.42);
            face.engine().pause();
        });
        look("short", [](test::FaceWindow& face) {
            face.engine().select(Phase::shortBreak);
            run(face, 0.3);
        });
        look("long", [](test::FaceWindow& face) {
            face.engine().select(Phase::longBreak);
            run(face, 0.7);
        });
        look("hours", [](test::FaceWindow& face) {
            face.settings().focusMinutes.set(120);
            face.settings().focusSymbol.set("");
            run(face, 0.4);
        });
    }
}

TEST_F(TimerFaceGallery, Editors) {
    const auto still = [](test::FaceWindow& face) { face.appearance.setReducesMotion(true); };
    for (const TimerStyle style : allCases<TimerStyle>) {
        const QString name = QString::fromUtf8(rawValue(style));
        const auto chosen = [&](test::FaceWindow& face) {
            still(face);
            face.settings().timerStyle.set(style);
        };
        const auto type = [](const char* text) {
            return [text](test::FaceWindow& face) {
                face.click(QStringLiteral("25:00 remaining"));
                face.type(QString::fromUtf8(text));
            };
        };
        draw(name + QStringLiteral("-typing"), chosen, {}, type(""));
        draw(name + QStringLiteral("-typing3"), chosen, {}, type("120"));
        draw(name + QStringLiteral("-typing0"), chosen, {}, [](test::FaceWindow& face) {
            face.click(QStringLiteral("25:00 remaining"));
            QTest::keyClick(&face.window(), Qt::Key_Delete);
        });
        draw(name + QStringLiteral("-focus"), chosen, {}, [](test::FaceWindow& face) {
            for (int step = 0; step < 4 && face.focusedName() != QStringLiteral("25:00 remaining"); ++step)
                QTest::keyClick(&face.window(), Qt::Key_Tab);
        });
    }
    draw(QStringLiteral("grid"), still, {}, [](test::FaceWindow& face) {
        face.click(QStringLiteral("Focus icon"));
        QCoreApplication::processEvents();
    });
}

TEST_F(TimerFaceGallery, Roll) {
    draw(
        QStringLiteral("roll"), [](test::FaceWindow& face) { run(face, 0.42); }, {},
        [](test::FaceWindow& face) {
            (void)face.window().grabWindow();
            face.harness.pass(Seconds{1});
            (void)face.window().grabWindow();
            QTest::qWait(90);
        });
}

TEST_F(TimerFaceGallery, Choices) {
    draw(
        QStringLiteral("choices"), [](test::FaceWindow&) {},
        "Column { x: 24; y: 24; spacing: 12\n"
        "PresetChips { active: 0; fontSize: 13 }\n"
        "Row { spacing: 8; SymbolPickerButton { selection: 'eye' } SymbolPickerButton { selection: '' } }\n"
        "SymbolGrid { selection: 'leaf' } }");
}

} // namespace
} // namespace selvane
