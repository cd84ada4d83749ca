#include "Selvane/UI/Popover/PopoverPanel.h"

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QStyleHints>

#include <gtest/gtest.h>

#include <iostream>

/// Everything that decides how the views look is the same here on every machine: platform, face, language.
/// The scale is 1, or what QT_SCALE_FACTOR says.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("FONTCONFIG_FILE", SELVANE_PICTURE_FONTS);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    selvane::PopoverPanel::prepare();
    const QGuiApplication application(argc, argv);
    // A text cursor that comes and goes would be on some pictures only.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    if (QFontInfo(QGuiApplication::font()).family() != QStringLiteral("Inter")) {
        std::cerr << "The pictures are of the face Inter, which is not installed.\n";
        return 1;
    }
    return RUN_ALL_TESTS();
}
