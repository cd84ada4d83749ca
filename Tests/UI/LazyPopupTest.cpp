#include "Selvane/UI/Controls/LazyPopup.h"

#include "ControlsFixture.h"
#include "Support/TemporaryFolder.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace selvane {
namespace {

class LazyPopupTest : public test::ControlsFixture {
protected:
    LazyPopupTest() {
        appearance.setReducesMotion(true);
        owner = show(R"(Item {
            id: owner
            width: 60; height: 24
            property string words: "One"
            LazyPopup { objectName: "popup"; properties: ({ words: owner.words }) }
        })");
        popup = owner->findChild<LazyPopup*>(QStringLiteral("popup"));
        popup->setSource(QUrl::fromLocalFile(QString::fromStdString(folder.path() / "Card.qml")));
    }

    void describe() const {
        folder.write("Card.qml", "import QtQuick\nimport Selvane.Controls\nPopupCard {\n"
                                 " required property string words\n accessibleName: words\n"
                                 " Item { implicitWidth: 100; implicitHeight: 50 }\n}");
    }

    test::TemporaryFolder folder;
    QQuickItem* owner = nullptr;
    LazyPopup* popup = nullptr;
};

TEST_F(LazyPopupTest, ReadsItsFileWhenItIsFirstOpenedAndIsKept) {
    EXPECT_FALSE(popup->isOpen());
    EXPECT_EQ(popup->made(), nullptr);
    // The file is there only now.
    describe();
    popup->open();
    const QObject* const card = popup->made();
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->property("parent").value<QQuickItem*>(), owner);
    key(Qt::Key_Escape);
    popup->open();
    EXPECT_EQ(popup->made(), card);
}

TEST_F(LazyPopupTest, TellsWhenItOpensAndCloses) {
    describe();
    const QSignalSpy told(popup, &LazyPopup::isOpenChanged);
    popup->open();
    EXPECT_TRUE(popup->isOpen());
    EXPECT_EQ(told.count(), 1);
    key(Qt::Key_Escape);
    EXPECT_FALSE(popup->isOpen());
    EXPECT_EQ(told.count(), 2);
    popup->open();
    EXPECT_TRUE(popup->isOpen());
    EXPECT_EQ(told.count(), 3);
}

TEST_F(LazyPopupTest, PropertiesFollowTheirBinding) {
    describe();
    popup->open();
    EXPECT_NE(accessible(QStringLiteral("One")), nullptr);
    owner->setProperty("words", QStringLiteral("Two"));
    EXPECT_EQ(accessible(QStringLiteral("One")), nullptr);
    EXPECT_NE(accessible(QStringLiteral("Two")), nullptr);
}

TEST_F(LazyPopupTest, WhatCannotBeMadeIsLoggedAndNothingOpens) {
    testing::internal::CaptureStderr();
    popup->open();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("Selvane: a part of a window doesn't load: "));
    EXPECT_FALSE(popup->isOpen());
    EXPECT_EQ(popup->made(), nullptr);
}

} // namespace
} // namespace selvane
