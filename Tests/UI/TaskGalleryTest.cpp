#include "TaskViewFixture.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>

namespace selvane {
namespace {

/// Pictures of the list of tasks. Where they are wanted, SELVANE_GALLERY names a folder for them:
///
///     SELVANE_GALLERY=/tmp/pictures QT_SCALE_FACTOR=2 build/release/bin/ui-tests
///     --gtest_filter='TaskGallery*'
class TaskGallery : public test::TaskViewFixture {
protected:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("SELVANE_GALLERY"))
            GTEST_SKIP() << "no pictures are wanted";
        _font = QGuiApplication::font();
        QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
        top = 40;
    }
    void TearDown() override {
        if (!qEnvironmentVariableIsEmpty("SELVANE_GALLERY"))
            QGuiApplication::setFont(_font);
    }

    /// In all looks.
    void take(const QString& name) {
        appearance.setDark(false);
        save(name + QStringLiteral("-light"));
        appearance.setDark(true);
        save(name + QStringLiteral("-dark"));
        appearance.setHighContrast(true);
        save(name + QStringLiteral("-contrast"));
        appearance.setHighContrast(false);
        appearance.setDark(false);
    }

    void fill() {
        add({"Write the quarterly report", "Reply about the venue", "Sketch the onboarding flow",
             "Book the train"});
        model->setEstimate(id("Write the quarterly report"), 4);
        model->setEstimate(id("Sketch the onboarding flow"), 2);
        model->setCurrentTaskID(id("Write the quarterly report"));
        for (int session = 0; session < 2; ++session) {
            model->engine().start();
            harness.pass(Seconds{1501});
            model->engine().skip();
        }
        finish("Book the train");
    }

private:
    void save(const QString& name) {
        window.setColor(theme().surface());
        polish();
        const QDir folder(qEnvironmentVariable("SELVANE_GALLERY"));
        EXPECT_TRUE(folder.mkpath(QStringLiteral(".")));
        EXPECT_TRUE(window.grabWindow().save(folder.filePath(name + QStringLiteral(".png"))));
    }

    QFont _font;
};

TEST_F(TaskGallery, Empty) {
    show();
    take(QStringLiteral("empty"));
}

TEST_F(TaskGallery, One) {
    add({"Write"});
    show();
    take(QStringLiteral("one"));
}

TEST_F(TaskGallery, Four) {
    fill();
    show();
    take(QStringLiteral("four"));
}

TEST_F(TaskGallery, Twelve) {
    fill();
    add({"Call the bank", "Water the plants", "Read chapter seven", "Fix the bicycle", "Plan the week",
         "Answer the letters", "Sort the photographs", "Buy bread"});
    model->setEstimate(id("Call the bank"), 1);
    show();
    QTest::mouseMove(&window, inRow(2, 340));
    QWheelEvent wheel(inRow(2), window.mapToGlobal(inRow(2)), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QGuiApplication::sendEvent(&window, &wheel);
    QTest::qWait(600);
    take(QStringLiteral("twelve"));
}

TEST_F(TaskGallery, OnlyDone) {
    add({"Write", "Reply"});
    finish("Write");
    finish("Reply");
    show();
    take(QStringLiteral("done"));
}

TEST_F(TaskGallery, LongTitlesAndEstimates) {
    add({"Prepare the slides for the meeting with the whole department on Thursday afternoon",
         "Übung 🎹 für das Konzert in der großen Halle am Samstag", "ملاحظات الاجتماع",
         "Done and very long to be "
         "struck through up to its "
         "very end"});
    const auto& items = model->tasks().items;
    model->setEstimate(items[0].id, 8);
    model->setEstimate(items[1].id, 40);
    model->setCurrentTaskID(items[0].id);
    finish(items[3].title);
    show();
    take(QStringLiteral("long"));
}

TEST_F(TaskGallery, Keyboard) {
    fill();
    show();
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Down);
    take(QStringLiteral("keyboard"));
}

TEST_F(TaskGallery, Editing) {
    fill();
    show();
    tasks->beginRename(tasks->taskID(1));
    take(QStringLiteral("editing"));
}

TEST_F(TaskGallery, Adding) {
    fill();
    show();
    click({120, top + 210});
    type(QStringLiteral("Call the bank"));
    take(QStringLiteral("adding"));
}

TEST_F(TaskGallery, Dragging) {
    fill();
    show();
    press(inRow(0));
    moveMouse(inRow(0), inRow(1) + QPoint(0, 14));
    take(QStringLiteral("dragging"));
    letGo(inRow(1));
}

TEST_F(TaskGallery, Menu) {
    fill();
    show();
    click(inRow(0), Qt::RightButton);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    QTest::qWait(300);
    key(Qt::Key_Down);
    take(QStringLiteral("menu"));
}

} // namespace
} // namespace selvane
