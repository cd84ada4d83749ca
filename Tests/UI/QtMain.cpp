#include "Selvane/UI/Popover/PopoverPanel.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

/// Tests with windows run on a Qt platform that needs no display.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    selvane::PopoverPanel::prepare();
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
