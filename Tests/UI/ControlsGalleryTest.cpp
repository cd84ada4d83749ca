#include "ControlsFixture.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>

namespace selvane {
namespace {

/// Pictures of the controls in all their states. Where they are wanted, SELVANE_GALLERY names a folder for
/// them:
///
///     SELVANE_GALLERY=/tmp/pictures QT_SCALE_FACTOR=2 build/release/bin/ui-tests --gtest_filter='*Gallery*'
class ControlsGallery : public test::ControlsFixture {
protected:
    static constexpr const char* controls = R"(
        Item {
            width: 560; height: 620
            component Caption: Text { color: Theme.secondaryText; font.pixelSize: Theme.caption }
            Column {
                x: 20; y: 16; spacing: 14
                Row {
                    spacing: 10
                    PillButton { text: "Reset"; anchors.verticalCenter: parent.verticalCenter }
                    PillButton { text: "Start"; prominent: true; objectName: "start" }
                    PillButton { text: "Skip"; anchors.verticalCenter: parent.verticalCenter }
                    PillButton { text: "Reset"; enabled: false; anchors.verticalCenter: parent.verticalCenter }
                    PillButton { text: "Pressed"; down: true; anchors.verticalCenter: parent.verticalCenter }
                }
                Row {
                    spacing: 14
                    TextButton { text: "Clear done" }
                    TextButton { text: "Disabled"; enabled: false }
                    IconButton { symbol: "speaker.wave.2.fill"; tooltip: "Turn sound off" }
                    IconButton { symbol: "arrow.up.forward.app"; tooltip: "Open"; objectName: "hovered" }
                    IconButton { symbol: "speaker.slash"; tooltip: "Turn sound on"; enabled: false }
                    IconButton { symbol: "ellipsis"; tooltip: "More" }
                }
                PillTabs { width: 316; items: ["Tasks", "Progress"]; currentIndex: 0 }
                PillTabs { width: 316; items: ["7 days", "30 days", "Year"]; currentIndex: 1 }
                CapsuleSurface {
                    width: 316; height: 38
                    Symbol { x: 14; anchors.verticalCenter: parent.verticalCenter; name: "cloud.rain"; color: Theme.secondaryText }
                    Text { x: 40; anchors.verticalCenter: parent.verticalCenter; text: "Rain"; color: Theme.primaryText; font.pixelSize: 13 }
                    Text { x: 90; anchors.verticalCenter: parent.verticalCenter; text: "Secondary"; color: Theme.secondaryText; font.pixelSize: 13 }
                    IconButton { x: 284; y: 6; symbol: "speaker.wave.2.fill"; tooltip: "Turn sound off" }
                }
                Row {
                    spacing: 10
                    Repeater {
                        model: [Look.Flat, Look.Clear, Look.Regular, Look.Tinted]
                        CapsuleSurface {
                            width: 80; height: 34; level: modelData
                            Text { anchors.centerIn: parent; text: ["Off", "Low", "Medium", "High"][index]; color: Theme.primaryText; font.pixelSize: 13; font.weight: Font.Medium }
                        }
                    }
                }
                Row {
                    spacing: 10
                    Repeater {
                        model: [Look.Flat, Look.Clear, Look.Regular, Look.Tinted]
                        CapsuleSurface {
                            width: 80; height: 34; level: modelData; interactive: true; pressed: true
                            Text { anchors.centerIn: parent; text: "pressed"; color: Theme.primaryText; font.pixelSize: 13; font.weight: Font.Medium }
                        }
                    }
                }
                Row {
                    spacing: 18
                    MonoSwitch { text: "On"; checked: true }
                    MonoSwitch { text: "Off" }
                    MonoSwitch { text: "On"; checked: true; enabled: false }
                    MonoSwitch { text: "Off"; enabled: false }
                    MonoSwitch { checked: true }
                }
                Row {
                    spacing: 20
                    PlainTextField { width: 140; placeholderText: "Add a task…" }
                    PlainTextField { width: 140; text: "Write the report" }
                    PlainTextField { width: 140; text: "Selected"; Component.onCompleted: selectAll(); persistentSelection: true }
                }
                Row {
                    spacing: 8
                    Text { text: "Primary"; color: Theme.primaryText; font.pixelSize: 13 }
                    Text { text: "Secondary"; color: Theme.secondaryText; font.pixelSize: 13 }
                    Text { text: "Tertiary"; color: Theme.tertiaryText; font.pixelSize: 13 }
                    Text { text: "Ink 60 %"; color: Theme.ink(0.6); font.pixelSize: 13 }
                    Text { text: "Ink 22 %"; color: Theme.ink(0.22); font.pixelSize: 13 }
                }
            }
            PopupMenu {
                objectName: "menu"
                parent: anchor
                title: "Music"
                PopupMenuItem { text: "Rain"; markable: true; marked: true }
                PopupMenuItem { text: "White noise"; markable: true }
                PopupMenuItem { text: "Pink noise"; markable: true; enabled: false }
                PopupMenuSeparator {}
                PopupMenuItem { text: "Statistics"; shortcut: "Ctrl+S" }
                PopupMenu { title: "Estimate"; PopupMenuItem { text: "1 session" } }
                PopupMenuItem { text: "Reset the timer to switch"; hint: true }
                PopupMenuSeparator {}
                PopupMenuItem { text: "Delete"; destructive: true }
            }
            Item {
                id: anchor
                x: 20; y: 396; width: 40; height: 8
            }
            PopupCard {
                objectName: "card"
                x: 330; y: 430
                Text { text: "Focus icon"; color: Theme.primaryText; font.pixelSize: 13; font.weight: Font.DemiBold }
            }
        })";

    void picture(const QString& name) {
        const QString folder = qEnvironmentVariable("SELVANE_GALLERY");
        window.setColor(theme().surface());
        const QImage image = window.grabWindow();
        ASSERT_FALSE(image.isNull());
        if (!folder.isEmpty()) {
            ASSERT_TRUE(QDir().mkpath(folder));
            const QString scale = QString::number(window.effectiveDevicePixelRatio());
            ASSERT_TRUE(image.save(folder + u'/' + name + u'-' + scale + QStringLiteral("x.png")));
        }
    }

    /// In light and dark, with ordinary and with strong contrast.
    void everyPicture(const QString& name) {
        for (const bool strong : {false, true}) {
            for (const bool dark : {false, true}) {
                appearance.setHighContrast(strong);
                appearance.setDark(dark);
                QTest::qWait(0);
                picture(name + (dark ? QStringLiteral("-dark") : QStringLiteral("-light")) +
                        (strong ? QStringLiteral("-contrast") : QString()));
            }
        }
    }
};

TEST_F(ControlsGallery, EveryControlIsDrawn) {
    if (!qEnvironmentVariableIsEmpty("SELVANE_GALLERY"))
        QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    window.resize(560, 640);
    appearance.setReducesMotion(true);
    QQuickItem* const gallery = show(controls);
    ASSERT_NE(gallery, nullptr);
    gallery->setPosition({0, 0});
    QTest::keyClick(&window, Qt::Key_Tab);
    QTest::keyClick(&window, Qt::Key_Tab);
    QTest::mouseMove(&window, middle(gallery->findChild<QQuickItem*>(QStringLiteral("hovered"))));
    everyPicture(QStringLiteral("controls"));
    QTest::mouseMove(&window, {500, 600});
    ASSERT_TRUE(QMetaObject::invokeMethod(gallery->findChild<QObject*>(QStringLiteral("menu")), "open"));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    everyPicture(QStringLiteral("menu"));
    key(Qt::Key_Escape);
    ASSERT_TRUE(QMetaObject::invokeMethod(gallery->findChild<QObject*>(QStringLiteral("card")), "open"));
    everyPicture(QStringLiteral("card"));
}

} // namespace
} // namespace selvane
