#include "harness/ChildProcess.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdio>

// All tests share a session bus that nobody else is on.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    velloran::tests::ChildProcess bus(
        {"dbus-daemon", "--nofork", "--print-address", "--config-file", BUS_CONFIGURATION});
    const auto address = bus.readLine();
    if (!address) {
        std::fputs("The session bus did not start.\n", stderr);
        return 1;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(*address));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_ACCESSIBILITY", "0");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
