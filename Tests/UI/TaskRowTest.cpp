#include "Selvane/UI/Controls/HoverTip.h"
#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Controls/Symbol.h"
#include "Selvane/UI/Tasks/CheckShape.h"
#include "Selvane/UI/Tasks/SessionDots.h"
#include "TaskViewFixture.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace selvane {
namespace {

/// What the list's rows show, and where.
class TaskRow : public test::TaskViewFixture {
protected:
    /// The row of that task; null if none is made.
    QQuickItem* row(const QString& title) {
        QAccessibleInterface* const found = accessible(title);
        return found ? qobject_cast<QQuickItem*>(found->object()) : nullptr;
    }

    /// What is seen below an item, in the order of drawing.
    static std::vector<QQuickItem*> seen(QQuickItem* item) {
        std::vector<QQuickItem*> all;
        if (!item || !item->isVisible())
            return all;
        all.push_back(item);
        for (QQuickItem* const child : item->childItems()) {
            const auto below = seen(child);
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }

    template <typename Item>
    static Item* seen(QQuickItem* below) {
        for (QQuickItem* const item : seen(below)) {
            if (auto* const found = qobject_cast<Item*>(item))
                return found;
        }
        return nullptr;
    }

    static Symbol* symbol(QQuickItem* below, const QString& name) {
        for (QQuickItem* const item : seen(below)) {
            auto* const found = qobject_cast<Symbol*>(item);
            if (found && found->name() == name)
                return found;
        }
        return nullptr;
    }

    static QQuickItem* text(QQuickItem* below, const QString& words) {
        for (QQuickItem* const item : seen(below)) {
            if (item->property("text").toString() == words)
                return item;
        }
        return nullptr;
    }

    /// The place of an item in the view.
    static QRectF place(QQuickItem* item) { return item->mapRectToScene({{}, item->size()}); }
    static QFont font(QQuickItem* item) { return item->property("font").value<QFont>(); }
    static QRgb color(QQuickItem* item) { return item->property("color").value<QColor>().rgba(); }
    static std::string tip(QQuickItem* item) {
        const auto* const tip = item->findChild<HoverTip*>();
        return tip ? tip->text().toStdString() : std::string();
    }
};

// Words

TEST_F(TaskRow, WordsOfTheListAreTheseExactly) {
    EXPECT_EQ(TaskListModel::heading(), QStringLiteral("TODAY"));
    EXPECT_EQ(TaskListModel::emptyText(), QStringLiteral("What's on today?"));
    EXPECT_EQ(TaskListModel::clearLabel(), QStringLiteral("Clear done"));
    EXPECT_EQ(TaskListModel::addPlaceholder(), QStringLiteral("Add a task…"));
    EXPECT_EQ(TaskListModel::titlePlaceholder(), QStringLiteral("Task"));
    EXPECT_EQ(TaskListModel::currentTooltip(), QStringLiteral("Current focus task"));
    EXPECT_EQ(TaskListModel::estimateLabel(), QStringLiteral("Estimate"));
    EXPECT_EQ(TaskListModel::noEstimateLabel(), QStringLiteral("None"));
    EXPECT_EQ(TaskListModel::renameLabel(), QStringLiteral("Rename"));
    EXPECT_EQ(TaskListModel::deleteLabel(), QStringLiteral("Delete"));
    EXPECT_EQ(TaskListModel::checkLabel(true), QStringLiteral("Mark as not done"));
    EXPECT_EQ(TaskListModel::checkLabel(false), QStringLiteral("Mark as done"));
    EXPECT_EQ(
        TaskListModel::estimates(),
        QStringList({QStringLiteral("1 session"), QStringLiteral("2 sessions"), QStringLiteral("3 sessions"),
                     QStringLiteral("4 sessions"), QStringLiteral("5 sessions"), QStringLiteral("6 sessions"),
                     QStringLiteral("7 sessions"), QStringLiteral("8 sessions")}));
}

// The mark of the current task

TEST_F(TaskRow, OnlyTheCurrentTaskIsMarked) {
    add({"Write", "Reply"});
    model->setCurrentTaskID(id("Reply"));
    show();
    EXPECT_EQ(symbol(row(QStringLiteral("Write")), QStringLiteral("scope")), nullptr);
    Symbol* const mark = symbol(row(QStringLiteral("Reply")), QStringLiteral("scope"));
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->size(), 11);
    EXPECT_EQ(mark->color(), theme().secondaryText());
    EXPECT_EQ(tip(mark), "Current focus task");
    EXPECT_EQ(place(mark).right(), width - 16);
    EXPECT_NEAR(place(mark).center().y(), inRow(1).y(), 0.5);
    model->setCurrentTaskID(std::nullopt);
    polish();
    EXPECT_EQ(symbol(row(QStringLiteral("Reply")), QStringLiteral("scope")), nullptr);
}

TEST_F(TaskRow, TipIsWantedWhileThePointerIsOnTheMark) {
    add({"Write"});
    model->setCurrentTaskID(id("Write"));
    show();
    Symbol* const mark = symbol(row(QStringLiteral("Write")), QStringLiteral("scope"));
    ASSERT_NE(mark, nullptr);
    const auto* const tip = mark->findChild<HoverTip*>();
    ASSERT_NE(tip, nullptr);
    EXPECT_FALSE(tip->isVisible());
    moveMouse(inRow(0), place(mark).center().toPoint());
    EXPECT_TRUE(tip->isVisible());
    moveMouse(place(mark).center().toPoint(), inRow(0));
    EXPECT_FALSE(tip->isVisible());
}

// Circles of sessions

TEST_F(TaskRow, CirclesAreThereFromAnEstimateOfOneOn) {
    add({"Write", "Reply", "Sketch"});
    model->setEstimate(id("Write"), 1);
    model->setEstimate(id("Reply"), 3);
    show();
    auto* const one = seen<SessionDots>(row(QStringLiteral("Write")));
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->size(), QSizeF(5, 5));
    EXPECT_EQ(tip(one), "0 of 1 session");
    auto* const three = seen<SessionDots>(row(QStringLiteral("Reply")));
    ASSERT_NE(three, nullptr);
    EXPECT_EQ(three->size(), QSizeF(3 * 5 + 2 * 3, 5));
    EXPECT_EQ(tip(three), "0 of 3 sessions");
    EXPECT_EQ(place(three).right(), width - 16);
    EXPECT_EQ(seen<SessionDots>(row(QStringLiteral("Sketch"))), nullptr);
}

TEST_F(TaskRow, WithoutAnEstimateDoneSessionsDrawNoCircles) {
    add({"Write"});
    model->setCurrentTaskID(id("Write"));
    model->engine().start();
    harness.pass(Seconds{1501});
    show();
    ASSERT_EQ(model->tasks().find(id("Write"))->completedPomodoros, 1);
    EXPECT_EQ(seen<SessionDots>(row(QStringLiteral("Write"))), nullptr);
}

TEST_F(TaskRow, CirclesOfDoneSessionsAreStronger) {
    add({"Write"});
    model->setEstimate(id("Write"), 2);
    show();
    auto* const dots = seen<SessionDots>(row(QStringLiteral("Write")));
    ASSERT_NE(dots, nullptr);
    EXPECT_NEAR(dots->doneColor().alphaF(), 0.8, 0.005);
    EXPECT_NEAR(dots->openColor().alphaF(), 0.18, 0.005);
    EXPECT_EQ(dots->doneColor().rgb(), theme().primary().rgb());
    EXPECT_EQ(dots->openColor().rgb(), theme().primary().rgb());
}

TEST(SessionDotsShape, FillsCirclesOfFiveFromTheLeft) {
    SessionDots dots;
    dots.setDone(1);
    dots.setTotal(2);
    dots.setDoneColor(Qt::red);
    dots.setOpenColor(Qt::blue);
    QImage picture(130, 50, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.scale(10, 10);
    dots.paint(&painter, dots.size());
    painter.end();
    EXPECT_EQ(picture.pixelColor(1, 25), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(48, 25), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(51, 25), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(78, 25), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(81, 25), QColor(Qt::blue));
    EXPECT_EQ(picture.pixelColor(128, 25), QColor(Qt::blue));
    EXPECT_EQ(picture.pixelColor(25, 48), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(2, 2), QColor(Qt::white)) << "they are round";
}

// The title

TEST_F(TaskRow, TitleStandsBetweenTheCircleAndTheMarks) {
    add({"Write", "Reply"});
    model->setEstimate(id("Write"), 1);
    show();
    QQuickItem* const title = text(row(QStringLiteral("Write")), QStringLiteral("Write"));
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(font(title).pixelSize(), 14);
    EXPECT_EQ(place(title), QRectF(16 + 18 + 10, listTop, width - 44 - 10 - 5 - 16, rowHeight));
    QQuickItem* const other = text(row(QStringLiteral("Reply")), QStringLiteral("Reply"));
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(place(other), QRectF(44, listTop + rowHeight, width - 44 - 16, rowHeight));
}

TEST_F(TaskRow, OnlyDoneTitlesAreStruckThroughAndQuiet) {
    add({"Write", "Reply"});
    finish("Reply");
    show();
    QQuickItem* const open = text(row(QStringLiteral("Write")), QStringLiteral("Write"));
    QQuickItem* const done = text(row(QStringLiteral("Reply")), QStringLiteral("Reply"));
    ASSERT_NE(open, nullptr);
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(color(open), theme().primaryText().rgba());
    EXPECT_EQ(seen(open).size(), 1U) << "no line";
    EXPECT_EQ(color(done), theme().secondaryText().rgba());
    ASSERT_EQ(seen(done).size(), 2U);
    QQuickItem* const line = seen(done)[1];
    EXPECT_EQ(line->height(), 1);
    EXPECT_EQ(line->width(), done->property("contentWidth").toDouble());
    // One colour with the words, also where it crosses them.
    EXPECT_EQ(color(line), over(theme().secondaryText(), theme().surface()).rgba());
    EXPECT_NEAR(place(line).center().y(), inRow(1).y(), 2);
}

// The circle

TEST_F(TaskRow, CheckCircleHasItsPlaceAndItsColors) {
    add({"Write", "Reply"});
    finish("Reply");
    show();
    auto* const open = seen<CheckShape>(row(QStringLiteral("Write")));
    auto* const done = seen<CheckShape>(row(QStringLiteral("Reply")));
    ASSERT_NE(open, nullptr);
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(place(open), QRectF(16, listTop + 8, 18, 18));
    EXPECT_EQ(open->ringColor(), theme().secondaryText());
    EXPECT_EQ(open->fillColor(), theme().primary());
    EXPECT_EQ(open->progress(), 0);
    EXPECT_EQ(done->progress(), 1);
}

TEST_F(TaskRow, OnlyDoneTasksHaveACheckMark) {
    add({"Write", "Reply"});
    finish("Reply");
    show();
    EXPECT_EQ(symbol(row(QStringLiteral("Write")), QStringLiteral("checkmark")), nullptr);
    Symbol* const mark = symbol(row(QStringLiteral("Reply")), QStringLiteral("checkmark"));
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->size(), 10);
    EXPECT_EQ(mark->weight(), Symbol::Bold);
    EXPECT_EQ(mark->color(), theme().inverse());
    EXPECT_EQ(mark->opacity(), 1);
    EXPECT_EQ(mark->scale(), 1);
    EXPECT_NEAR(place(mark).center().x(), 25, 0.5);
}

class CheckShapePicture : public testing::Test {
protected:
    /// Ten pixels to one of the window; the ring is red, the disc blue, the ground white.
    QImage at(double progress) {
        CheckShape shape;
        shape.setSize({18, 18});
        shape.setRingColor(Qt::red);
        shape.setFillColor(Qt::blue);
        shape.setProgress(progress);
        QImage shapePicture(180, 180, QImage::Format_ARGB32_Premultiplied);
        shapePicture.fill(Qt::transparent);
        QPainter painter(&shapePicture);
        painter.scale(10, 10);
        shape.paint(&painter, shape.size());
        QImage picture(shapePicture.size(), shapePicture.format());
        picture.fill(Qt::white);
        QPainter(&picture).drawImage(0, 0, shapePicture);
        return picture;
    }
    static constexpr int middle = 90;
};

TEST_F(CheckShapePicture, OffIsAWeakRingInsideTheEdge) {
    const QImage picture = at(0);
    const QColor ring = QColor::fromRgbF(1, 0.3F, 0.3F);
    for (const int x : {1, 13, 166, 178}) {
        EXPECT_NEAR(picture.pixelColor(x, middle).greenF(), ring.greenF(), 0.01) << x;
        EXPECT_NEAR(picture.pixelColor(x, middle).redF(), ring.redF(), 0.01) << x;
    }
    EXPECT_EQ(picture.pixelColor(17, middle), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(middle, middle), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(10, 10), QColor(Qt::white));
}

TEST_F(CheckShapePicture, HalfWayIsAHalfDiscInAStrongerRing) {
    const QImage picture = at(0.5);
    EXPECT_NEAR(picture.pixelColor(5, middle).greenF(), 0.15, 0.01) << "the ring at 0.85";
    EXPECT_NEAR(picture.pixelColor(middle, middle).redF(), 0.5, 0.01) << "the disc at 0.5";
    // The disc's scale is 0.65, its radius 58.5.
    EXPECT_EQ(picture.pixelColor(middle - 61, middle), QColor(Qt::white));
    EXPECT_NEAR(picture.pixelColor(middle - 56, middle).redF(), 0.5, 0.01);
}

TEST_F(CheckShapePicture, OnIsAFullDisc) {
    for (const double progress : {1.0, 1.2}) {
        const QImage picture = at(progress);
        for (const int x : {2, middle, 177})
            EXPECT_EQ(picture.pixelColor(x, middle), QColor(Qt::blue)) << x;
        EXPECT_EQ(picture.pixelColor(10, 10), QColor(Qt::white));
    }
}

TEST(CheckShapeMark, GrowsAndAppearsWithTheDisc) {
    CheckShape shape;
    EXPECT_DOUBLE_EQ(shape.markScale(), 0.4);
    EXPECT_DOUBLE_EQ(shape.markOpacity(), 0);
    shape.setProgress(0.5);
    EXPECT_DOUBLE_EQ(shape.markScale(), 0.7);
    EXPECT_DOUBLE_EQ(shape.markOpacity(), 0.5);
    shape.setProgress(1.1);
    EXPECT_DOUBLE_EQ(shape.markScale(), 1);
    EXPECT_DOUBLE_EQ(shape.markOpacity(), 1);
}

// Around the rows

TEST_F(TaskRow, HeadingHasItsPlaceAndItsType) {
    add({"Write"});
    finish("Write");
    show();
    QQuickItem* const heading = text(&view(), QStringLiteral("TODAY"));
    ASSERT_NE(heading, nullptr);
    EXPECT_EQ(font(heading).pixelSize(), 11);
    EXPECT_EQ(font(heading).weight(), QFont::DemiBold);
    EXPECT_NEAR(font(heading).letterSpacing(), 1.1, 0.01) << "kept in parts of 64";
    EXPECT_EQ(color(heading), theme().secondaryText().rgba());
    EXPECT_EQ(place(heading).left(), 16);
    EXPECT_NEAR(place(heading).center().y(), 16 + 7, 0.5);
    QQuickItem* const count = text(&view(), QStringLiteral("1 / 1"));
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(font(count).pixelSize(), 11);
    EXPECT_EQ(color(count), theme().secondaryText().rgba());
    EXPECT_EQ(place(count).right(), width - 16);
    EXPECT_EQ(place(row(QStringLiteral("Write"))), QRectF(0, listTop, width, rowHeight));
}

TEST_F(TaskRow, EmptyStateIsASymbolOverTheWords) {
    show();
    Symbol* const checklist = symbol(&view(), QStringLiteral("checklist"));
    QQuickItem* const words = text(&view(), QStringLiteral("What's on today?"));
    ASSERT_NE(checklist, nullptr);
    ASSERT_NE(words, nullptr);
    EXPECT_EQ(checklist->size(), 22);
    EXPECT_EQ(checklist->weight(), Symbol::Light);
    EXPECT_EQ(font(words).pixelSize(), 13);
    EXPECT_EQ(place(words).top() - place(checklist).bottom(), 6);
    EXPECT_NEAR(place(words).center().x(), width / 2.0, 1);
    EXPECT_NEAR(place(checklist).center().x(), width / 2.0, 1);
}

TEST_F(TaskRow, FieldForATaskHasItsPlace) {
    show();
    Symbol* const plus = symbol(&view(), QStringLiteral("plus"));
    ASSERT_NE(plus, nullptr);
    EXPECT_EQ(plus->size(), 12);
    EXPECT_EQ(plus->weight(), Symbol::Semibold);
    EXPECT_EQ(plus->color(), theme().secondaryText());
    EXPECT_NEAR(place(plus).center().x(), 16 + 9, 0.5);
    auto* const field = qobject_cast<QQuickItem*>(accessible(QStringLiteral("Add a task…"))->object());
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(font(field).pixelSize(), 14);
    EXPECT_EQ(place(field).left(), 16 + 18 + 10);
    EXPECT_EQ(place(field).right(), width - 16);
    EXPECT_EQ(place(field).bottom(), view().height() - 16);
}

} // namespace
} // namespace selvane
