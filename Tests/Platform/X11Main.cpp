#include "Support/XServer.h"

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

/// Runs tests on an X server of their own, with Qt's windows on it.
int main(int argc, char** argv) {
    // No test may find the session or the screen of whoever runs it.
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS", "DISPLAY",
                             "WAYLAND_DISPLAY", "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        qunsetenv(name);
    testing::InitGoogleTest(&argc, argv);
    // Only asked for the names of its tests, it needs no screen.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const selvane::test::XServer server;
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
