#include "Selvane/UI/Controls/LazyItem.h"

#include "ControlsFixture.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QPointer>

#include <gmock/gmock.h>

#include <string>

namespace selvane {
namespace {

using testing::HasSubstr;

class LazyItemTest : public test::ControlsFixture {
protected:
    LazyItemTest() {
        place = qobject_cast<LazyItem*>(
            show("LazyItem { property int asked: 7; properties: ({ number: asked }) }"));
        place->setSource(QUrl::fromLocalFile(QString::fromStdString(folder.path() / "Part.qml")));
    }

    /// Writes the file of the part: an item with `number` and with what else is told of it.
    void describe(const std::string& more = "") const {
        folder.write("Part.qml", "import QtQuick\nItem {\n required property int number\n" + more + "\n}");
    }

    [[nodiscard]] QQuickItem* part() const { return qobject_cast<QQuickItem*>(place->made()); }

    /// Wants the part, and returns what the log says to that.
    std::string wanted() {
        testing::internal::CaptureStderr();
        place->setWanted(true);
        return testing::internal::GetCapturedStderr();
    }

    static void destroyWhatIsDismissed() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    test::TemporaryFolder folder;
    LazyItem* place = nullptr;
};

TEST_F(LazyItemTest, ReadsItsFileWhenItIsFirstWanted) {
    EXPECT_EQ(part(), nullptr);
    // The file is there only now.
    describe();
    place->setWanted(true);
    ASSERT_NE(part(), nullptr);
    EXPECT_EQ(part()->parentItem(), place);
}

TEST_F(LazyItemTest, IsMadeAtOnceWhereItIsWantedFromTheBeginning) {
    describe();
    const std::string file = (folder.path() / "Part.qml").string();
    const auto* const other =
        qobject_cast<LazyItem*>(show("LazyItem { wanted: true; source: 'file://" +
                                     QByteArray::fromStdString(file) + "'; properties: ({ number: 1 }) }"));
    EXPECT_NE(other->made(), nullptr);
}

TEST_F(LazyItemTest, GoesWhenItIsNotWantedAndComesAsAnother) {
    describe();
    place->setWanted(true);
    const QPointer<QQuickItem> first = part();
    first->setProperty("number", 1);
    place->setWanted(false);
    EXPECT_EQ(part(), nullptr);
    EXPECT_TRUE(place->childItems().isEmpty()) << "it isn't seen any more";
    destroyWhatIsDismissed();
    EXPECT_TRUE(first.isNull());
    place->setWanted(true);
    ASSERT_NE(part(), nullptr);
    EXPECT_EQ(part()->property("number").toInt(), 7);
}

TEST_F(LazyItemTest, KeptStaysAsItIs) {
    describe();
    place->setKept(true);
    EXPECT_EQ(part(), nullptr) << "to keep isn't to want";
    place->setWanted(true);
    const QQuickItem* const first = part();
    place->setWanted(false);
    EXPECT_EQ(part(), first);
    place->setWanted(true);
    EXPECT_EQ(part(), first);
    destroyWhatIsDismissed();
    EXPECT_EQ(part(), first);
    place->setWanted(false);
    place->setKept(false);
    EXPECT_EQ(part(), nullptr) << "it was kept long enough";
}

TEST_F(LazyItemTest, PropertiesAreThereAsItIsMadeAndFollowTheirBinding) {
    describe("property int first: 0\n Component.onCompleted: first = number");
    place->setProperty("asked", 8);
    place->setWanted(true);
    ASSERT_NE(part(), nullptr);
    EXPECT_EQ(part()->property("first").toInt(), 8);
    place->setProperty("asked", 9);
    EXPECT_EQ(part()->property("number").toInt(), 9);
    EXPECT_EQ(part()->property("first").toInt(), 8);
}

TEST_F(LazyItemTest, StandsInTheWindowAsItsHandlersRun) {
    describe("property bool seen: false\n Component.onCompleted: { seen = Window.window !== null; "
             "forceActiveFocus(); }");
    place->setWanted(true);
    ASSERT_NE(part(), nullptr);
    EXPECT_TRUE(part()->property("seen").toBool());
    EXPECT_TRUE(part()->hasActiveFocus());
}

TEST_F(LazyItemTest, PlaceIsAsLargeAsThePart) {
    describe("implicitWidth: number * 10; implicitHeight: 5");
    place->setWanted(true);
    EXPECT_EQ(place->size(), QSizeF(70, 5));
    place->setProperty("asked", 3);
    EXPECT_EQ(place->size(), QSizeF(30, 5));
    EXPECT_EQ(part()->size(), QSizeF(30, 5));
    place->setWanted(false);
    EXPECT_EQ(place->size(), QSizeF(0, 0));
}

TEST_F(LazyItemTest, PartFillsAPlaceThatHasASize) {
    describe("implicitWidth: 10; implicitHeight: 5");
    place->setSize({200, 100});
    place->setWanted(true);
    EXPECT_EQ(part()->size(), QSizeF(200, 100));
    place->setSize({80, 60});
    EXPECT_EQ(part()->size(), QSizeF(80, 60));
    EXPECT_EQ(place->implicitWidth(), 10);
}

TEST_F(LazyItemTest, PartMayItselfEndTheWish) {
    describe("signal done; onDone: parent.wanted = false");
    place->setWanted(true);
    const QPointer<QQuickItem> first = part();
    ASSERT_TRUE(QMetaObject::invokeMethod(first, "done"));
    EXPECT_EQ(part(), nullptr);
    EXPECT_FALSE(first.isNull()) << "it is still at work";
    destroyWhatIsDismissed();
    EXPECT_TRUE(first.isNull());
}

TEST_F(LazyItemTest, PartMayEndTheWishAsItIsMade) {
    describe("Component.onCompleted: parent.wanted = false");
    place->setWanted(true);
    EXPECT_EQ(part(), nullptr);
    EXPECT_TRUE(place->childItems().isEmpty());
}

TEST_F(LazyItemTest, GoesWithItsPlace) {
    describe();
    place->setWanted(true);
    const QPointer<QQuickItem> first = part();
    delete place;
    EXPECT_TRUE(first.isNull());
}

TEST_F(LazyItemTest, WhatCannotBeMadeIsLoggedAndNothingThere) {
    struct {
        const char* name;
        const char* file;
        const char* said;
    } const rows[] = {
        {"no file", nullptr, "Part.qml"},
        {"no QML", "Item {", "Part.qml:1"},
        {"unknown type", "import QtQuick\nItem { Nothing {} }", "Nothing is not a type"},
        {"property that nobody gives",
         "import QtQuick\nItem { required property string given; property int number }",
         "Required property given was not initialized"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        engine.clearComponentCache();
        if (row.file)
            folder.write("Part.qml", row.file);
        const std::string log = wanted();
        EXPECT_THAT(log, HasSubstr("Selvane: a part of a window doesn't load: "));
        EXPECT_THAT(log, HasSubstr(row.said));
        EXPECT_EQ(part(), nullptr);
        EXPECT_TRUE(place->childItems().isEmpty());
        place->setWanted(false);
    }
}

} // namespace
} // namespace selvane
