#include "ControlsFixture.h"
#include "Selvane/UI/Controls/HoverTip.h"
#include "Selvane/UI/Controls/LazyPopup.h"
#include "Support/TemporaryFolder.h"

#include <QPointer>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <algorithm>

namespace selvane {
namespace {

class Controls : public test::ControlsFixture {
protected:
    Controls() { appearance.setReducesMotion(true); }

    /// Light and dark of a point of the window now, from 0 to 255.
    [[nodiscard]] int lightness(QPoint place) { return window.grabWindow().pixelColor(place).lightness(); }

    /// As a keyboard reports a key that is held: release and press again and again.
    void hold(Qt::Key which) {
        const auto send = [&](QEvent::Type type, bool repeats) {
            QKeyEvent event(type, which, Qt::NoModifier, QString(), repeats);
            QCoreApplication::sendEvent(&window, &event);
        };
        send(QEvent::KeyPress, false);
        for (int times = 0; times < 3; ++times) {
            send(QEvent::KeyRelease, true);
            send(QEvent::KeyPress, true);
        }
        send(QEvent::KeyRelease, false);
    }

    static QObject* child(const QQuickItem* item, const char* name) {
        return item->findChild<QObject*>(QString::fromLatin1(name));
    }
};

// Buttons

class ButtonTable : public Controls, public testing::WithParamInterface<const char*> {
protected:
    QQuickItem* showButton(const char* more = "") {
        return show(
            QByteArray(GetParam()) + "{ " +
            (isIcon() ? "symbol: \"plus\"; tooltip: \"Add\"" : "text: \"Add\"; tooltip: \"Adds one\"") +
            "; " + more + " }");
    }
    [[nodiscard]] static bool isIcon() { return QByteArray(GetParam()) == "IconButton"; }
};

TEST_P(ButtonTable, IsPressedByMouseKeysAndScreenReaderOnceEach) {
    QQuickItem* const button = showButton();
    const QSignalSpy clicks(button, SIGNAL(clicked()));
    clickOn(button);
    EXPECT_EQ(clicks.count(), 1);
    button->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 2);
    key(Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 3);
    key(Qt::Key_Enter);
    EXPECT_EQ(clicks.count(), 4);
    pressAccessibly(QStringLiteral("Add"));
    EXPECT_EQ(clicks.count(), 5);
}

TEST_P(ButtonTable, IsKnownToAssistiveTechnology) {
    showButton();
    QAccessibleInterface* const button = accessible(QStringLiteral("Add"));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->role(), QAccessible::Button);
    EXPECT_TRUE(button->state().focusable);
    EXPECT_EQ(button->text(QAccessible::Description), isIcon() ? QString() : QStringLiteral("Adds one"))
        << "a tooltip that is the name isn't said twice";
}

TEST_P(ButtonTable, DoesNothingWhileDisabled) {
    QQuickItem* const button = showButton("enabled: false");
    const QSignalSpy clicks(button, SIGNAL(clicked()));
    clickOn(button);
    pressAccessibly(QStringLiteral("Add"));
    key(Qt::Key_Tab);
    EXPECT_FALSE(button->hasActiveFocus());
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(accessible(QStringLiteral("Add"))->text(QAccessible::Description), theme().unavailable());
}

TEST_P(ButtonTable, HeldKeyPressesOnce) {
    QQuickItem* const button = showButton();
    const QSignalSpy clicks(button, SIGNAL(clicked()));
    button->forceActiveFocus(Qt::TabFocusReason);
    int expected = 0;
    for (const Qt::Key which : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        hold(which);
        EXPECT_EQ(clicks.count(), ++expected) << which;
    }
}

TEST_P(ButtonTable, ReturnWithOtherKeysIsForOthers) {
    QQuickItem* const button = showButton();
    const QSignalSpy clicks(button, SIGNAL(clicked()));
    button->forceActiveFocus(Qt::TabFocusReason);
    for (const Qt::KeyboardModifier modifier :
         {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier, Qt::MetaModifier}) {
        QTest::keyClick(&window, Qt::Key_Return, modifier);
        QTest::keyClick(&window, Qt::Key_Enter, modifier | Qt::KeypadModifier);
    }
    EXPECT_EQ(clicks.count(), 0);
    QTest::keyClick(&window, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(clicks.count(), 1);
}

TEST_P(ButtonTable, LooksPressedWhileItIsHeldDown) {
    QQuickItem* const button = showButton();
    const QImage resting = window.grabWindow();
    button->setProperty("down", true);
    EXPECT_NE(window.grabWindow(), resting);
}

TEST_P(ButtonTable, ShowsTheRingForTheKeyboardOnly) {
    QQuickItem* const button = showButton();
    QObject* const background = button->property("background").value<QObject*>();
    clickOn(button);
    EXPECT_FALSE(background->property("ringed").toBool());
    button->forceActiveFocus(Qt::OtherFocusReason);
    EXPECT_FALSE(background->property("ringed").toBool());
    button->setFocus(false);
    const QImage without = window.grabWindow();
    key(Qt::Key_Tab);
    EXPECT_TRUE(button->hasActiveFocus());
    EXPECT_TRUE(background->property("ringed").toBool());
    EXPECT_NE(window.grabWindow(), without);
}

TEST_P(ButtonTable, AnswersToPointerAndPress) {
    settings.glassLevel.set(GlassLevel::medium);
    QQuickItem* const button = showButton();
    QTest::mouseMove(&window, {5, 5});
    const QImage resting = window.grabWindow();
    QTest::mouseMove(&window, middle(button));
    QCoreApplication::processEvents();
    const QImage hovered = window.grabWindow();
    EXPECT_NE(hovered, resting);
    QTest::mousePress(&window, Qt::LeftButton, {}, middle(button));
    EXPECT_NE(window.grabWindow(), hovered);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, middle(button));
}

INSTANTIATE_TEST_SUITE_P(All, ButtonTable, testing::Values("PillButton", "IconButton", "TextButton"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(Controls, PillsHaveTheirSizes) {
    const QQuickItem* const prominent = show(R"(PillButton { text: "Go"; prominent: true })");
    EXPECT_EQ(prominent->size(), QSizeF(116, 38));
    const QQuickItem* const plain = show(R"(PillButton { text: "Go" })");
    EXPECT_EQ(plain->height(), 34);
    EXPECT_LT(plain->width(), 116);
    const QQuickItem* const wide =
        show(R"(PillButton { text: "A rather long word on a button"; prominent: true })");
    EXPECT_GT(wide->width(), 116);
    EXPECT_EQ(wide->width(), std::ceil(wide->width())) << "whole pixels keep edges crisp";
}

TEST_F(Controls, PillShrinksWhilePressedUnlessDisabled) {
    QQuickItem* const button = show(R"(PillButton { text: "Go" })");
    QTest::mousePress(&window, Qt::LeftButton, {}, middle(button));
    EXPECT_TRUE(QTest::qWaitFor([&] { return qFuzzyCompare(button->scale(), 0.96); }));
    QTest::mouseRelease(&window, Qt::LeftButton, {}, middle(button));
    EXPECT_TRUE(QTest::qWaitFor([&] { return qFuzzyCompare(button->scale(), 1.0); }));
    button->setEnabled(false);
    QTest::mousePress(&window, Qt::LeftButton, {}, middle(button));
    EXPECT_EQ(button->scale(), 1);
    EXPECT_EQ(button->property("plainText").value<QColor>(), theme().tertiaryText());
}

TEST_F(Controls, IconButtonKeepsItsSizeWhateverTheSymbol) {
    EXPECT_EQ(show(R"(IconButton { symbol: "ellipsis"; symbolSize: 20; tooltip: "More" })")->size(),
              QSizeF(26, 26));
}

TEST_F(Controls, CapsulesHaveTheSameHitAreaAtEveryLevel) {
    QQuickItem* const button = show(R"(PillButton { text: "A wide button"; tooltip: "t" })");
    const QSizeF size = button->size();
    const QSignalSpy clicks(button, SIGNAL(clicked()));
    int expected = 0;
    for (const GlassLevel level : {GlassLevel::off, GlassLevel::low, GlassLevel::medium, GlassLevel::high}) {
        settings.glassLevel.set(level);
        EXPECT_EQ(button->size(), size);
        for (const QPointF& place :
             {QPointF(1, 17), QPointF(size.width() - 2, 17), QPointF(40, 1), QPointF(40, 32)}) {
            QTest::mouseClick(&window, Qt::LeftButton, {}, button->mapToScene(place).toPoint());
            ++expected;
        }
    }
    EXPECT_EQ(clicks.count(), expected);
}

TEST_F(Controls, LevelsOfGlassLookDifferent) {
    for (const bool dark : {false, true}) {
        appearance.setDark(dark);
        window.setColor(theme().surface());
        std::vector<QImage> pictures;
        for (const char* const level : {"Flat", "Clear", "Regular", "Tinted"}) {
            QQuickItem* const capsule =
                show(QByteArray("CapsuleSurface { width: 80; height: 34; level: Look.") + level + " }");
            pictures.push_back(window.grabWindow());
            delete capsule;
            for (std::size_t earlier = 0; earlier + 1 < pictures.size(); ++earlier)
                EXPECT_NE(pictures.back(), pictures[earlier]) << level << " and " << earlier;
        }
    }
}

TEST_F(Controls, FlatCapsuleIsFlatWhateverTheLevel) {
    QQuickItem* const capsule = show("FlatCapsule { width: 80; height: 34 }");
    settings.glassLevel.set(GlassLevel::off);
    const QImage off = window.grabWindow();
    settings.glassLevel.set(GlassLevel::high);
    EXPECT_EQ(window.grabWindow(), off);
    // Black at 0.045 on 0.985.
    EXPECT_NEAR(lightness(middle(capsule)), 240, 1);
    capsule->setProperty("pressed", true);
    EXPECT_NEAR(lightness(middle(capsule)), 229, 1);
}

TEST_F(Controls, EdgeIsOneCrispPixel) {
    show("FlatCapsule { width: 80; height: 34 }");
    const QImage picture = window.grabWindow();
    ASSERT_EQ(window.effectiveDevicePixelRatio(), 1);
    const auto at = [&](int y) { return picture.pixelColor(80, y).lightness(); };
    EXPECT_EQ(at(59), 251) << "the ground";
    EXPECT_LT(at(60), at(61)) << "the edge";
    EXPECT_EQ(at(61), at(70)) << "the fill";
    EXPECT_EQ(at(93), at(60));
    EXPECT_EQ(at(94), 251);
}

TEST_F(Controls, GroupIsAsLargeAsItsContent) {
    const QQuickItem* const group = show(R"(GlassGroup {
        FlatCapsule { width: 80; height: 34 }
        FlatCapsule { x: 90; width: 60; height: 24 }
    })");
    EXPECT_EQ(group->size(), QSizeF(150, 34));
}

// Tabs

class TabsTest : public Controls {
protected:
    QQuickItem* tabs = show(R"(PillTabs {
        width: 300; items: ["Tasks", "Progress", "Year"]; currentIndex: 1; accessibleName: "Pages"
    })");
    QSignalSpy chosen{tabs, SIGNAL(chosen(int))};

    [[nodiscard]] std::vector<int> choices() const {
        std::vector<int> found;
        for (const QList<QVariant>& arguments : chosen)
            found.push_back(arguments.constFirst().toInt());
        return found;
    }
    void clickAt(double x) {
        QTest::mouseClick(&window, Qt::LeftButton, {}, tabs->mapToScene({x, 15}).toPoint());
    }
};

TEST_F(TabsTest, ClickChoosesAndTheOwnerDecides) {
    clickAt(20);
    clickAt(280);
    EXPECT_THAT(choices(), testing::ElementsAre(0, 2));
    EXPECT_EQ(tabs->property("currentIndex").toInt(), 1);
}

TEST_F(TabsTest, ArrowsChooseTheNeighbours) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(tabs->hasActiveFocus());
    key(Qt::Key_Left);
    key(Qt::Key_Right);
    EXPECT_THAT(choices(), testing::ElementsAre(0, 2));
}

TEST_F(TabsTest, ArrowsEndAtTheEnds) {
    key(Qt::Key_Tab);
    tabs->setProperty("currentIndex", 0);
    key(Qt::Key_Left);
    tabs->setProperty("currentIndex", 2);
    key(Qt::Key_Right);
    EXPECT_THAT(choices(), testing::ElementsAre(0, 2)) << "where they are";
}

TEST_F(TabsTest, KeyboardStopsOnceAtTheWholeRow) {
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_TRUE(tabs->hasActiveFocus()) << "round again, past no tab";
}

TEST_F(TabsTest, ScreenReaderKnowsWhichIsSelectedAndChooses) {
    EXPECT_EQ(accessible(QStringLiteral("Pages"))->role(), QAccessible::PageTabList);
    EXPECT_EQ(accessible(QStringLiteral("Tasks"))->role(), QAccessible::PageTab);
    EXPECT_FALSE(accessible(QStringLiteral("Tasks"))->state().selected);
    EXPECT_TRUE(accessible(QStringLiteral("Progress"))->state().selected);
    pressAccessibly(QStringLiteral("Year"));
    EXPECT_THAT(choices(), testing::ElementsAre(2));
}

TEST_F(TabsTest, HighlightLiesBehindTheChosenOne) {
    const auto segment = [&](double x) { return lightness(tabs->mapToScene({x, 8}).toPoint()); };
    EXPECT_EQ(segment(120), 255);
    EXPECT_LT(segment(20), 250);
    tabs->setProperty("currentIndex", 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return segment(20) == 255; }));
    EXPECT_LT(segment(120), 250);
}

TEST_F(TabsTest, HighlightIsThereAtOnceInAWiderRow) {
    appearance.setReducesMotion(false);
    ASSERT_FALSE(theme().reducesMotion());
    const auto shapes = tabs->findChildren<QQuickItem*>();
    const auto highlight = std::ranges::find_if(
        shapes, [](const QQuickItem* shape) { return shape->property("shadowRadius").toDouble() > 0; });
    ASSERT_NE(highlight, shapes.end());
    const double before = (*highlight)->x();
    tabs->setWidth(tabs->width() + 30);
    EXPECT_DOUBLE_EQ((*highlight)->x(), before + 10) << "the second of three";
}

TEST_F(TabsTest, NothingIsChosenWhileDisabled) {
    tabs->setEnabled(false);
    clickAt(20);
    key(Qt::Key_Tab);
    key(Qt::Key_Left);
    pressAccessibly(QStringLiteral("Year"));
    EXPECT_THAT(choices(), testing::IsEmpty());
    EXPECT_EQ(accessible(QStringLiteral("Pages"))->text(QAccessible::Description), theme().unavailable());
}

TEST_F(TabsTest, NothingIsChosenWhereThereIsNothing) {
    tabs->setProperty("items", QStringList());
    tabs->setProperty("currentIndex", -1);
    key(Qt::Key_Tab);
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    EXPECT_THAT(choices(), testing::IsEmpty());
}

TEST_F(TabsTest, ItemsAreAtLeastAsHighAsToldInsideThePadding) {
    EXPECT_EQ(tabs->height(), 30);
    tabs->setProperty("minHeight", 34);
    EXPECT_EQ(tabs->height(), 40);
}

// Switches

class SwitchTest : public Controls {
protected:
    QQuickItem* toggle = show(R"(MonoSwitch { text: "Sound" })");
    QSignalSpy toggled{toggle, SIGNAL(toggled())};

    [[nodiscard]] bool isOn() const { return toggle->property("checked").toBool(); }
};

TEST_F(SwitchTest, IsToggledByMouseKeysAndScreenReaderOnceEach) {
    clickOn(toggle);
    EXPECT_TRUE(isOn());
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_FALSE(isOn());
    key(Qt::Key_Return);
    EXPECT_TRUE(isOn());
    pressAccessibly(QStringLiteral("Sound"));
    EXPECT_FALSE(isOn());
    EXPECT_EQ(toggled.count(), 4);
}

TEST_F(SwitchTest, LabelBelongsToIt) {
    QTest::mouseClick(&window, Qt::LeftButton, {}, toggle->mapToScene({3, 9}).toPoint());
    EXPECT_TRUE(isOn());
}

TEST_F(SwitchTest, TellsAssistiveTechnologyItsState) {
    QAccessibleInterface* const control = accessible(QStringLiteral("Sound"));
    EXPECT_EQ(control->role(), QAccessible::CheckBox);
    EXPECT_TRUE(control->state().checkable);
    EXPECT_FALSE(control->state().checked);
    clickOn(toggle);
    EXPECT_TRUE(control->state().checked);
}

TEST_F(SwitchTest, HeldKeyTogglesOnceAndReturnOnlyAlone) {
    toggle->forceActiveFocus(Qt::TabFocusReason);
    hold(Qt::Key_Return);
    EXPECT_EQ(toggled.count(), 1);
    hold(Qt::Key_Space);
    EXPECT_EQ(toggled.count(), 2);
    QTest::keyClick(&window, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(toggled.count(), 2);
}

TEST_F(SwitchTest, DoesNothingWhileDisabled) {
    toggle->setEnabled(false);
    clickOn(toggle);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    pressAccessibly(QStringLiteral("Sound"));
    QAccessibleActionInterface* const actions = accessible(QStringLiteral("Sound"))->actionInterface();
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(isOn());
    EXPECT_EQ(toggled.count(), 0);
    EXPECT_EQ(toggle->property("indicator").value<QQuickItem*>()->opacity(), 0.4);
}

TEST_F(SwitchTest, KnobStandsAtTheTrailingEndWhenOn) {
    const QQuickItem* const shape = toggle->property("indicator").value<QQuickItem*>();
    // The middles of the ends of the track, which lies 4 within the item.
    const QPoint leading = shape->mapToScene({13, 13}).toPoint();
    const QPoint trailing = shape->mapToScene({27, 13}).toPoint();
    EXPECT_EQ(lightness(leading), 255) << "a white knob when off";
    EXPECT_LT(lightness(trailing), 250);
    clickOn(toggle);
    EXPECT_TRUE(QTest::qWaitFor([&] { return lightness(trailing) == 255; }));
    EXPECT_LT(lightness(leading), 40) << "the track in ink";
    EXPECT_EQ(toggle->mapToScene({toggle->width(), 0}).x(), shape->mapToScene({36, 0}).x());
}

// Menus

class MenuTest : public Controls {
protected:
    MenuTest() {
        folder.write("Sounds.qml", R"(import QtQuick
import Selvane.Controls
PopupMenu {
    required property Item owner
    title: "Music"
    PopupMenuItem { text: "Rain"; markable: true; marked: true; onTriggered: owner.chosen = text }
    PopupMenuItem { text: "Off"; enabled: false; onTriggered: owner.chosen = text }
    PopupMenuItem { text: "Why it is off"; hint: true; onTriggered: owner.chosen = text }
    PopupMenuSeparator {}
    PopupMenuItem { text: "Statistics"; shortcut: "Ctrl+S"; onTriggered: owner.chosen = text }
    PopupMenu {
        title: "Estimate"
        PopupMenuItem { text: "1 session"; onTriggered: owner.chosen = text }
        PopupMenuItem { text: "2 sessions"; onTriggered: owner.chosen = text }
    }
})");
        owner = show(R"(Item {
            id: owner
            width: 60; height: 24
            property int escapes: 0
            property string chosen: ""
            function open() { menu.open(); }
            Shortcut { sequence: "Escape"; onActivated: owner.escapes += 1 }
            LazyPopup { id: menu; objectName: "menu"; properties: ({ owner: owner }) }
            PillButton {
                objectName: "outside"
                x: 180; y: 300; text: "Outside"
                onClicked: owner.chosen = text
            }
        })");
        lazy = owner->findChild<LazyPopup*>(QStringLiteral("menu"));
        lazy->setSource(QUrl::fromLocalFile(QString::fromStdString(folder.path() / "Sounds.qml")));
    }

    void open() {
        ASSERT_TRUE(QMetaObject::invokeMethod(owner, "open"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return menu() && menu()->property("opened").toBool(); }));
    }
    [[nodiscard]] QObject* menu() const { return lazy->made(); }
    [[nodiscard]] static QQuickItem* row(QObject* menu, int index) {
        QQuickItem* found = nullptr;
        QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, index));
        return found;
    }
    [[nodiscard]] bool isOpen() const { return menu() && menu()->property("visible").toBool(); }
    [[nodiscard]] std::string chosen() const { return owner->property("chosen").toString().toStdString(); }
    [[nodiscard]] QRectF place() const {
        const QQuickItem* const content = menu()->property("contentItem").value<QQuickItem*>()->parentItem();
        return content->mapRectToScene({0, 0, content->width(), content->height()});
    }

    test::TemporaryFolder folder;
    QQuickItem* owner = nullptr;
    LazyPopup* lazy = nullptr;
};

TEST_F(MenuTest, IsMadeWhenItIsFirstOpened) {
    EXPECT_EQ(menu(), nullptr);
    open();
    EXPECT_NE(menu(), nullptr);
}

TEST_F(MenuTest, ArrowsAndReturnChoose) {
    open();
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(), "Rain");
    EXPECT_FALSE(isOpen());
}

TEST_F(MenuTest, ArrowsPassOverWhatCantBeChosen) {
    open();
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(), "Statistics");
}

TEST_F(MenuTest, ClickChooses) {
    open();
    QAccessibleInterface* const row = accessible(QStringLiteral("Statistics"));
    QTest::mouseClick(&window, Qt::LeftButton, {}, window.mapFromGlobal(row->rect().center()));
    EXPECT_EQ(chosen(), "Statistics");
    EXPECT_FALSE(isOpen());
}

TEST_F(MenuTest, ClickOnADisabledRowOrAHintDoesNothing) {
    open();
    for (const char* const name : {"Off", "Why it is off"}) {
        QAccessibleInterface* const row = accessible(QString::fromLatin1(name));
        QTest::mouseClick(&window, Qt::LeftButton, {}, window.mapFromGlobal(row->rect().center()));
    }
    EXPECT_EQ(chosen(), "");
    EXPECT_TRUE(isOpen());
}

TEST_F(MenuTest, EscapeClosesOnlyTheMenu) {
    open();
    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(owner->property("escapes").toInt(), 0);
    key(Qt::Key_Escape);
    EXPECT_EQ(owner->property("escapes").toInt(), 1);
}

TEST_F(MenuTest, ClickOutsideClosesAndDoesNothingElse) {
    open();
    const QQuickItem* const outside = owner->findChild<QQuickItem*>(QStringLiteral("outside"));
    clickOn(outside);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(chosen(), "");
    clickOn(outside);
    EXPECT_EQ(chosen(), "Outside");
}

TEST_F(MenuTest, SubmenuIsOpenedAndChosenFromByKeys) {
    open();
    for (int step = 0; step < 3; ++step)
        key(Qt::Key_Down);
    key(Qt::Key_Right);
    ASSERT_TRUE(QTest::qWaitFor([&] { return accessible(QStringLiteral("2 sessions")) != nullptr; }));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(), "2 sessions");
    EXPECT_FALSE(isOpen());
}

TEST_F(MenuTest, KeepsWithinTheWindow) {
    for (const QPointF& corner : {QPointF(0, 0), QPointF(320, 0), QPointF(0, 400), QPointF(320, 400)}) {
        owner->setPosition(corner);
        open();
        EXPECT_TRUE(QRectF(8, 8, window.width() - 16, window.height() - 16).contains(place()))
            << corner.x() << ", " << corner.y() << ": " << place().x() << ", " << place().y();
        key(Qt::Key_Escape);
    }
}

TEST_F(MenuTest, IsAsWideAsItsWidestRow) {
    open();
    EXPECT_GT(place().width(), 90);
    EXPECT_LT(place().width(), 200);
}

TEST_F(MenuTest, ScrollsWhereTheWindowIsLower) {
    window.resize(348, 90);
    open();
    EXPECT_LE(place().height(), 74);
    QQuickItem* const rows = menu()->property("contentItem").value<QQuickItem*>();
    EXPECT_TRUE(rows->property("interactive").toBool());
    for (int step = 0; step < 3; ++step)
        key(Qt::Key_Down);
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows->property("contentY").toDouble() > 0; }))
        << "the last row comes into sight";
}

TEST_F(MenuTest, WordsOfAllRowsStandBelowEachOther) {
    open();
    for (const int index : {0, 1, 2, 4, 5})
        EXPECT_EQ(row(menu(), index)->property("leftPadding").toDouble(), 26) << index;
    QObject* const submenu = row(menu(), 5)->property("subMenu").value<QObject*>();
    ASSERT_NE(submenu, nullptr);
    EXPECT_EQ(row(submenu, 0)->property("leftPadding").toDouble(), 10) << "no row there bears a checkmark";
}

TEST_F(MenuTest, AssistiveTechnologyCantChooseWhatCantBeChosen) {
    open();
    for (const char* const name : {"Off", "Why it is off"}) {
        QAccessibleInterface* const row = accessible(QString::fromLatin1(name));
        ASSERT_NE(row, nullptr);
        if (row->actionInterface())
            row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    EXPECT_EQ(chosen(), "");
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(accessible(QStringLiteral("Off"))->text(QAccessible::Description), theme().unavailable());
    EXPECT_EQ(accessible(QStringLiteral("Why it is off"))->role(), QAccessible::StaticText);
}

TEST_F(MenuTest, AssistiveTechnologyKnowsTheRows) {
    open();
    EXPECT_EQ(accessible(QStringLiteral("Music"))->role(), QAccessible::PopupMenu);
    QAccessibleInterface* const marked = accessible(QStringLiteral("Rain"));
    EXPECT_EQ(marked->role(), QAccessible::MenuItem);
    EXPECT_TRUE(marked->state().checkable);
    EXPECT_TRUE(marked->state().checked);
    EXPECT_FALSE(accessible(QStringLiteral("Statistics"))->state().checkable);
    EXPECT_EQ(accessible(QStringLiteral("Statistics"))->text(QAccessible::Description),
              QStringLiteral("Ctrl+S"));
    pressAccessibly(QStringLiteral("Statistics"));
    EXPECT_EQ(chosen(), "Statistics");
    EXPECT_FALSE(isOpen());
}

// Cards

TEST_F(Controls, CardClosesByEscapeAloneAndKeepsWithinTheWindow) {
    QQuickItem* const owner = show(R"(Item {
        id: owner
        property int escapes: 0
        property alias isOpen: card.visible
        function open() { card.open(); }
        Shortcut { sequence: "Escape"; onActivated: owner.escapes += 1 }
        PopupCard { id: card; x: 400; y: -300; accessibleName: "Icon"; Item { implicitWidth: 100; implicitHeight: 50 } }
    })");
    ASSERT_TRUE(QMetaObject::invokeMethod(owner, "open"));
    ASSERT_TRUE(owner->property("isOpen").toBool());
    QAccessibleInterface* const card = accessible(QStringLiteral("Icon"));
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->role(), QAccessible::Dialog);
    key(Qt::Key_Escape);
    EXPECT_FALSE(owner->property("isOpen").toBool());
    EXPECT_EQ(owner->property("escapes").toInt(), 0);
}

// Text fields

TEST_F(Controls, FieldTakesTextAndShowsItsPlaceholderWhenEmpty) {
    QQuickItem* const field = show(R"(PlainTextField { width: 200; placeholderText: "Add a task…" })");
    const QImage empty = window.grabWindow();
    clickOn(field);
    EXPECT_TRUE(field->hasActiveFocus());
    QTest::keyClick(&window, Qt::Key_A);
    EXPECT_EQ(field->property("text").toString(), QStringLiteral("a"));
    EXPECT_NE(window.grabWindow(), empty);
    QAccessibleInterface* const known = accessible(QStringLiteral("Add a task…"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::EditableText);
    EXPECT_TRUE(known->state().focusable);
}

// Stops of the keyboard

TEST_F(Controls, StopHasARingOnlyWhileTheKeyboardIsSeenThere) {
    QQuickItem* const stop =
        show(R"(KeyboardStop { width: 40; height: 20; ringTop: 10; ringColor: "black" })");
    const auto isRinged = [&](QPoint place) { return lightness(stop->position().toPoint() + place) < 60; };
    EXPECT_TRUE(stop->childItems().empty());
    stop->forceActiveFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(stop->childItems().empty()) << "brought here by the mouse";
    stop->setFocus(false);
    key(Qt::Key_Tab);
    ASSERT_TRUE(stop->hasActiveFocus());
    EXPECT_TRUE(isRinged({20, 7})) << "above what it is around";
    EXPECT_TRUE(isRinged({-3, 15}));
    EXPECT_TRUE(isRinged({20, 22}));
    EXPECT_FALSE(isRinged({20, -3}));
    EXPECT_FALSE(isRinged({20, 15})) << "it is hollow";
    stop->setSize({60, 20});
    EXPECT_TRUE(isRinged({62, 15})) << "it goes along";
    stop->setFocus(false);
    EXPECT_TRUE(stop->childItems().empty());
}

// Tooltips

class TipTest : public Controls {
protected:
    HoverTip* showTip(const char* text, double x = 40, double y = 60) {
        QQuickItem* const item = show(QByteArray(R"(Item {
            width: 26; height: 26
            HoverTip { objectName: "tip"; delay: 0; text: ")") +
                                      text + "\" } }");
        item->setPosition({x, y});
        return item->findChild<HoverTip*>(QStringLiteral("tip"));
    }
    static bool comes(HoverTip* tip) {
        tip->setVisible(true);
        return QTest::qWaitFor([&] { return tip->bubble() != nullptr; });
    }
    static QRectF place(const HoverTip* tip) {
        const QQuickItem* const bubble = tip->bubble();
        return {bubble->position(), bubble->size()};
    }
};

TEST_F(TipTest, BubbleExistsOnlyWhileItIsSeen) {
    HoverTip* const tip = showTip("Words");
    EXPECT_EQ(tip->bubble(), nullptr);
    const qsizetype before = window.contentItem()->childItems().size();
    ASSERT_TRUE(comes(tip));
    EXPECT_EQ(window.contentItem()->childItems().size(), before + 1);
    tip->setVisible(false);
    EXPECT_EQ(tip->bubble(), nullptr);
    EXPECT_EQ(window.contentItem()->childItems().size(), before);
}

TEST_F(TipTest, ComesOnlyAfterTheDelay) {
    HoverTip* const tip = showTip("Words");
    tip->setDelay(60'000);
    tip->setVisible(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(tip->bubble(), nullptr);
}

TEST_F(TipTest, NoWordsMakeNoBubble) {
    HoverTip* const tip = showTip("");
    tip->setVisible(true);
    QTest::qWait(1);
    EXPECT_EQ(tip->bubble(), nullptr);
}

TEST_F(TipTest, ChangedWordsAreShown) {
    HoverTip* const tip = showTip("Words");
    ASSERT_TRUE(comes(tip));
    tip->setText(QStringLiteral("Others"));
    ASSERT_NE(tip->bubble(), nullptr);
    EXPECT_EQ(tip->bubble()->property("text").toString(), QStringLiteral("Others"));
}

TEST_F(TipTest, KeepsWithinTheWindowAndClearOfItsItem) {
    const char* const words =
        "Many words that explain at some length what a click here would do, and more than fits";
    for (const QPointF& corner : {QPointF(0, 0), QPointF(320, 0), QPointF(0, 390), QPointF(320, 390)}) {
        HoverTip* const tip = showTip(words, corner.x(), corner.y());
        ASSERT_TRUE(comes(tip));
        EXPECT_TRUE(QRectF({0, 0}, window.size()).contains(place(tip)));
        EXPECT_FALSE(place(tip).intersects(QRectF(corner, QSizeF(26, 26))));
        EXPECT_GT(place(tip).height(), 30) << "the words wrap";
        tip->setVisible(false);
    }
}

TEST_F(TipTest, GoesWithItsItem) {
    HoverTip* const tip = showTip("Words");
    ASSERT_TRUE(comes(tip));
    QPointer<QQuickItem> bubble = tip->bubble();
    qobject_cast<QQuickItem*>(tip->parent())->setVisible(false);
    EXPECT_TRUE(bubble.isNull());
    HoverTip* const other = showTip("Words");
    ASSERT_TRUE(comes(other));
    bubble = other->bubble();
    delete other->parent();
    EXPECT_TRUE(bubble.isNull());
}

TEST_F(TipTest, MovesWithItsItem) {
    HoverTip* const tip = showTip("Words", 100, 100);
    ASSERT_TRUE(comes(tip));
    const QRectF before = place(tip);
    QQuickItem* const item = qobject_cast<QQuickItem*>(tip->parent());
    item->setPosition({120, 130});
    EXPECT_TRUE(QTest::qWaitFor([&] { return place(tip) == before.translated(20, 30); }));
}

TEST_F(TipTest, StandsApartFromWhatIsAsBright) {
    for (const bool dark : {false, true}) {
        appearance.setDark(dark);
        HoverTip* const tip = showTip("Words", 100, 100);
        ASSERT_TRUE(comes(tip));
        window.setColor(theme().solidPrimary());
        const QPointF middle = place(tip).center();
        const QPoint rim(static_cast<int>(middle.x()), static_cast<int>(place(tip).top()));
        EXPECT_NEAR(lightness(rim), theme().surface().lightness(), 1);
        EXPECT_NEAR(lightness(rim + QPoint(0, 1)), theme().solidPrimary().lightness(), 1);
        EXPECT_NEAR(lightness(rim - QPoint(0, 1)), theme().solidPrimary().lightness(), 1);
        tip->setVisible(false);
    }
}

TEST_F(TipTest, TakesNoClickAndNoKeyFromOthers) {
    QQuickItem* const owner = show(R"(Item {
        id: owner
        property int escapes: 0
        property int clicks: 0
        width: 26; height: 26
        Shortcut { sequence: "Escape"; onActivated: owner.escapes += 1 }
        HoverTip { objectName: "tip"; delay: 0; text: "Words" }
        TapHandler { parent: owner.parent; onTapped: owner.clicks += 1 }
    })");
    HoverTip* const tip = owner->findChild<HoverTip*>(QStringLiteral("tip"));
    ASSERT_TRUE(comes(tip));
    key(Qt::Key_Escape);
    EXPECT_EQ(owner->property("escapes").toInt(), 1);
    QTest::mouseClick(&window, Qt::LeftButton, {}, place(tip).center().toPoint());
    EXPECT_EQ(owner->property("clicks").toInt(), 1);
}

TEST_F(TipTest, ButtonShowsItUnderThePointerAndUnderTheKeyboard) {
    QQuickItem* const button = show(R"(IconButton { symbol: "plus"; tooltip: "Add" })");
    HoverTip* const tip = button->findChild<HoverTip*>();
    EXPECT_FALSE(tip->isVisible());
    QTest::mouseMove(&window, middle(button));
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip->isVisible(); }));
    QTest::mouseMove(&window, {5, 5});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !tip->isVisible(); }));
    key(Qt::Key_Tab);
    EXPECT_TRUE(tip->isVisible());
}

TEST_F(TipTest, ButtonThatCantBeUsedShowsItToo) {
    QQuickItem* const button = show(R"(PillButton { text: "Reset"; tooltip: "Reset this"; enabled: false })");
    HoverTip* const tip = button->findChild<HoverTip*>();
    QTest::mouseMove(&window, {5, 5});
    EXPECT_FALSE(tip->isVisible());
    QTest::mouseMove(&window, middle(button));
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip->isVisible(); }));
    EXPECT_FALSE(button->property("hovered").toBool());
}

} // namespace
} // namespace selvane
