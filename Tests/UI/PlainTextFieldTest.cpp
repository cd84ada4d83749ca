#include "ControlsFixture.h"

#include <QCursor>
#include <QInputMethodEvent>

#include <string>
#include <string_view>

namespace selvane {
namespace {

/// A field in an area that counts the presses beside it.
class PlainTextFieldTest : public test::ControlsFixture {
protected:
    QQuickItem* around = show(R"(MouseArea {
        width: 200; height: 60
        acceptedButtons: Qt.AllButtons
        property alias field: field
        property int presses: 0
        onPressed: presses += 1
        PlainTextField { id: field; width: 100; placeholderText: "Add" }
    })");
    QQuickItem* field = around->property("field").value<QQuickItem*>();

    [[nodiscard]] std::string text() const { return field->property("text").toString().toStdString(); }
    void type(std::string_view letters) {
        for (const char letter : letters)
            QTest::keyClick(&window, letter);
    }
    void shortcut(Qt::Key which) { QTest::keyClick(&window, which, Qt::ControlModifier); }
    [[nodiscard]] const QQuickItem& placeholder() const {
        for (const QQuickItem* const child : field->childItems()) {
            if (child->inherits("QQuickText"))
                return *child;
        }
        ADD_FAILURE() << "there is no placeholder";
        return *field;
    }
};

TEST_F(PlainTextFieldTest, TabAndClickBringTheKeyboard) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(field->hasActiveFocus());
    field->setFocus(false);
    clickOn(field);
    EXPECT_TRUE(field->hasActiveFocus());
    EXPECT_EQ(around->property("presses").toInt(), 0);
}

TEST_F(PlainTextFieldTest, OtherButtonsNeitherBringTheKeyboardNorPressBesideIt) {
    QTest::mouseClick(&window, Qt::RightButton, {}, middle(field));
    QTest::mouseClick(&window, Qt::BackButton, {}, middle(field));
    EXPECT_FALSE(field->hasActiveFocus());
    EXPECT_EQ(around->property("presses").toInt(), 0);
    QTest::mouseClick(&window, Qt::RightButton, {}, around->mapToScene({150, 40}).toPoint());
    EXPECT_EQ(around->property("presses").toInt(), 1);
}

TEST_F(PlainTextFieldTest, PointerIsThatOfText) {
    QTest::mouseMove(&window, {5, 5});
    QTest::mouseMove(&window, middle(field));
    EXPECT_TRUE(QTest::qWaitFor([this] { return window.cursor().shape() == Qt::IBeamCursor; }));
}

TEST_F(PlainTextFieldTest, MouseSelects) {
    field->setProperty("text", QStringLiteral("two words"));
    QTest::mouseDClick(&window, Qt::LeftButton, {}, field->mapToScene({5, 8}).toPoint());
    EXPECT_EQ(field->property("selectedText").toString(), QStringLiteral("two"));
}

TEST_F(PlainTextFieldTest, KeysCopyPasteAndUndo) {
    key(Qt::Key_Tab);
    type("abc");
    shortcut(Qt::Key_A);
    shortcut(Qt::Key_X);
    EXPECT_EQ(text(), "");
    shortcut(Qt::Key_V);
    shortcut(Qt::Key_V);
    EXPECT_EQ(text(), "abcabc");
    shortcut(Qt::Key_Z);
    EXPECT_EQ(text(), "abc");
}

TEST_F(PlainTextFieldTest, PlaceholderIsThereUntilSomethingIsTyped) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(placeholder().isVisible());
    QInputMethodEvent composing(QStringLiteral("n"), {});
    QCoreApplication::sendEvent(field, &composing);
    EXPECT_FALSE(placeholder().isVisible()) << "what is being composed lies there";
    QInputMethodEvent done;
    QCoreApplication::sendEvent(field, &done);
    EXPECT_TRUE(placeholder().isVisible());
    type("a");
    EXPECT_FALSE(placeholder().isVisible());
}

TEST_F(PlainTextFieldTest, TextThatIsTooLongEndsAtTheEdgesAndShowsTheCursor) {
    const QPoint beside = field->mapToScene({101, 0}).toPoint();
    const QRect outside(beside, QSize(60, static_cast<int>(field->height())));
    const QImage empty = window.grabWindow().copy(outside);
    key(Qt::Key_Tab);
    type("mmmmmmmmmmmmmmmmmmmmmmmmmmmm");
    EXPECT_EQ(window.grabWindow().copy(outside), empty);
    const QRectF cursor = field->property("cursorRectangle").toRectF();
    EXPECT_LE(cursor.right(), field->width() + 1);
    EXPECT_GT(cursor.left(), field->width() - 10);
}

TEST_F(PlainTextFieldTest, AssistiveTechnologyReadsAndWritesIt) {
    QAccessibleInterface* const known = accessible(QStringLiteral("Add"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::EditableText);
    EXPECT_TRUE(known->state().focusable);
    EXPECT_TRUE(known->state().editable);
    EXPECT_FALSE(known->state().readOnly);
    field->setProperty("text", QStringLiteral("abc"));
    EXPECT_EQ(known->text(QAccessible::Value), QStringLiteral("abc"));
    ASSERT_NE(known->textInterface(), nullptr);
    EXPECT_EQ(known->textInterface()->characterCount(), 3);
}

} // namespace
} // namespace selvane
