#include "harness/Screen.h"

#include <QApplication>
#include <QFontDatabase>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

// The tests of one program share one screen: most of the time goes into starting it and the toolkit.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    qunsetenv("XDG_CURRENT_DESKTOP");
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_FONT_DPI", "96");
    qputenv("QT_ACCESSIBILITY", "0");
    const velloran::tests::Screen screen;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName("velloran");
    QApplication::setApplicationVersion("1.2.3");
    if (!QFontDatabase::families().contains("Inter")) {
        std::fputs("These tests need the font Inter (fonts-inter).\n", stderr);
        return 1;
    }
    QFont font("Inter");
    font.setPixelSize(13);
    QApplication::setFont(font);
    return RUN_ALL_TESTS();
}
